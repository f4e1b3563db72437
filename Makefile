# Entry points for people and CI. Each target installs what is missing, configures and builds.
JOBS ?= $(shell nproc)
BUILD ?= build
ASAN_BUILD ?= build-asan
TSAN_BUILD ?= build-tsan
FUZZ_BUILD ?= build-fuzz
# The thread-safety tests: the shared store's concurrent commit/read test by default.
TSAN_TESTS ?= Concurrency
TSAN_TARGETS ?= test_sfxparamstorage
ROOT := $(CURDIR)

.PHONY: all deps build run test test-asan test-tsan bench fuzz clean

all: build

deps:
	@scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

# The main job: what the host tool makes of the bundled sample files.
run: build
	@$(BUILD)/korvictl params

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

test-asan: deps
	@cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKORVI_SANITIZE=ON -DKORVI_BENCH=OFF >/dev/null
	@cmake --build $(ASAN_BUILD) -j $(JOBS)
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	    ctest --output-on-failure -j $(JOBS)

test-tsan: deps
	@cmake -S . -B $(TSAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKORVI_TSAN=ON -DKORVI_BENCH=OFF \
	    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ >/dev/null
	@cmake --build $(TSAN_BUILD) -j $(JOBS) --target $(TSAN_TARGETS)
	@cd $(TSAN_BUILD) && TSAN_OPTIONS=halt_on_error=1 ctest --output-on-failure -j $(JOBS) -R "$(TSAN_TESTS)"

bench: build
	@for b in $(BUILD)/bench/*; do [ -x "$$b" ] && [ -f "$$b" ] && "$$b"; done

fuzz: deps
	@cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKORVI_FUZZ=ON -DKORVI_TESTS=OFF -DKORVI_BENCH=OFF \
	    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ >/dev/null
	@cmake --build $(FUZZ_BUILD) -j $(JOBS)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD)
