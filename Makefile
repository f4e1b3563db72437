# Entry points for people and CI. Each target installs what is missing, configures and builds.
JOBS ?= $(shell nproc)
BUILD ?= build
ASAN_BUILD ?= build-asan
TSAN_BUILD ?= build-tsan
FUZZ_BUILD ?= build-fuzz
# The thread-safety tests: the shared store's concurrent commit/read test, the service context's
# changes against concurrent getters, the service's client-thread stress test, the settings
# database's two-thread inserts and writes against a second connection, and the tuning reader on
# several threads.
TSAN_TESTS ?= Concurrency|TwoThreads|ReaderNeighbours|StoreDurability
TSAN_TARGETS ?= test_sfxparamstorage test_context test_service test_store test_tuning
FUZZ_SECONDS ?= 600
ROOT := $(CURDIR)
# Builds quietly: the compiler's progress goes to DIR/build.log and is shown only when the build
# fails, so a person sees the result they asked for. $(call quiet_build,DIR[,cmake --build options])
quiet_build = cmake --build $(1) -j $(JOBS) $(2) >$(1)/build.log 2>&1 || \
    { cat $(1)/build.log; echo "build failed; full log in $(1)/build.log" >&2; exit 1; }

.PHONY: all deps build run test test-asan test-tsan check-builds bench fuzz fuzz-run clean

all: build

deps:
	@scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
	@$(call quiet_build,$(BUILD))

# The main job: the service brought up over a scratch copy of the bundled sample device root,
# then a short client session (profile switch, parameter change, tuning-device choice) showing
# what each step did to the effect's parameters.
run: build
	@$(BUILD)/korvictl shell tools/korvictl/demo.korvi

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

test-asan: deps
	@cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKORVI_SANITIZE=ON -DKORVI_BENCH=OFF >/dev/null
	@$(call quiet_build,$(ASAN_BUILD))
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	    ctest --output-on-failure -j $(JOBS)

test-tsan: deps
	@cmake -S . -B $(TSAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKORVI_TSAN=ON -DKORVI_BENCH=OFF \
	    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ >/dev/null
	@$(call quiet_build,$(TSAN_BUILD),--target $(TSAN_TARGETS))
	@cd $(TSAN_BUILD) && TSAN_OPTIONS=halt_on_error=1 ctest --output-on-failure -j $(JOBS) -R "$(TSAN_TESTS)"

# The builds integrators use: the device recipe (formatted, complete, built on this machine by
# mini-soong), the interface package (hidl-gen) and the CMake package (installed and embedded).
check-builds: build
	@scripts/check-device-build.sh $(BUILD)
	@scripts/check-interfaces.sh
	@scripts/check-cmake-package.sh $(BUILD)

bench: build
	@for b in $(BUILD)/bench/bench_*; do [ -f "$$b" ] && [ -x "$$b" ] || continue; "$$b" || exit 1; done

fuzz: deps
	@cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKORVI_FUZZ=ON -DKORVI_TESTS=OFF -DKORVI_BENCH=OFF \
	    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ >/dev/null
	@$(call quiet_build,$(FUZZ_BUILD))

# Runs each fuzzer for FUZZ_SECONDS, seeded with the bundled files; new inputs stay in $(FUZZ_BUILD).
fuzz-run: fuzz
	@mkdir -p $(FUZZ_BUILD)/corpus/tuning_reader $(FUZZ_BUILD)/corpus/blob_parser \
	    $(FUZZ_BUILD)/corpus/request_decoder $(FUZZ_BUILD)/corpus/query_encoder
	$(FUZZ_BUILD)/fuzz/fuzz_tuning_reader -max_total_time=$(FUZZ_SECONDS) -max_len=8192 \
	    -dict=fuzz/tuning_reader.dict $(FUZZ_BUILD)/corpus/tuning_reader fuzz/corpus/tuning_reader \
	    data/vendor/etc/korvi data/data/vendor/korvi data/formats
	$(FUZZ_BUILD)/fuzz/fuzz_blob_parser -max_total_time=$(FUZZ_SECONDS) \
	    $(FUZZ_BUILD)/corpus/blob_parser fuzz/corpus/blob_parser
	@mkdir -p $(FUZZ_BUILD)/corpus/tuning_entities $(FUZZ_BUILD)/corpus/reader_lint
	# Large inputs for entity amplification: a refused file must cost no more than its size.
	$(FUZZ_BUILD)/fuzz/fuzz_tuning_reader -max_total_time=$(FUZZ_SECONDS) -max_len=262144 \
	    -rss_limit_mb=1024 -timeout=10 -dict=fuzz/tuning_reader.dict \
	    $(FUZZ_BUILD)/corpus/tuning_entities fuzz/corpus/tuning_entities
	# The reader and korvictl's lint must agree on every record.
	$(FUZZ_BUILD)/fuzz/fuzz_reader_lint -max_total_time=$(FUZZ_SECONDS) -max_len=8192 \
	    -dict=fuzz/tuning_reader.dict $(FUZZ_BUILD)/corpus/reader_lint fuzz/corpus/tuning_reader \
	    data/vendor/etc/korvi data/data/vendor/korvi data/formats
	$(FUZZ_BUILD)/fuzz/fuzz_request_decoder -max_total_time=$(FUZZ_SECONDS) -max_len=256 \
	    $(FUZZ_BUILD)/corpus/request_decoder fuzz/corpus/request_decoder
	$(FUZZ_BUILD)/fuzz/fuzz_query_encoder -max_total_time=$(FUZZ_SECONDS) -max_len=64 \
	    $(FUZZ_BUILD)/corpus/query_encoder fuzz/corpus/query_encoder

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD)
