#!/usr/bin/env bash
# Checks that other CMake projects can use the library both ways: installed (cmake --install, then
# find_package(krvaxservice)) and embedded (add_subdirectory). The consumer project in
# tests/package/consumer compiles every offered header on its own and reads the bundled factory
# tuning file; its output must match what the installed korvictl reports for the same file.
#
# Usage: scripts/check-cmake-package.sh [BUILD_DIR]   (default build/, already built)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=${1:-build}
work=$build/package-check
prefix=$work/prefix
tuning=$root/data/vendor/etc/korvi/wem-default.xml
jobs=$(nproc)
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
fi

fail() { echo "check-cmake-package: $*" >&2; exit 1; }

rm -rf "$work"
mkdir -p "$work"

cmake --install "$build" --prefix "$prefix" >"$work/install.log"
for f in lib/libkrvaxservice.so bin/korvictl \
         include/krvaxservice/tuning/TuningFileParser.h include/krvaxservice/cutils/properties.h \
         include/krvaxservice/sfxparamstorage/SfxParamStore.h \
         share/doc/krvaxservice/README.md share/doc/krvaxservice/korvictl.md \
         lib/cmake/krvaxservice/krvaxserviceConfig.cmake \
         lib/cmake/krvaxservice/krvaxserviceConfigVersion.cmake; do
  [ -e "$prefix/$f" ] || fail "cmake --install left out $f"
done

# What the consumer must print: the format version and the profile lines of korvictl's summary,
# from the installed tool (which must run from the prefix, finding its library there).
"$prefix/bin/korvictl" inspect --brief "$tuning" >"$work/korvictl.out"
{
  sed -n 's/^  format version  *\([^ ]*\).*/format version \1/p' "$work/korvictl.out"
  sed -n 's/^  \(profile [0-9][0-9]* "[^"]*"\).*/\1/p' "$work/korvictl.out"
} >"$work/expected"
grep -q '^profile 0 ' "$work/expected" || fail "korvictl reported no profile for $tuning"

consume() {
  local how=$1; shift
  local dir=$work/consumer-$how
  cmake -S tests/package/consumer -B "$dir" -DKORVI_USE="$how" \
      "${launcher[@]}" "$@" >"$dir.configure.log" 2>&1 \
      || { cat "$dir.configure.log" >&2; fail "configuring the consumer ($how) failed"; }
  cmake --build "$dir" -j "$jobs" >"$dir.build.log" 2>&1 \
      || { tail -40 "$dir.build.log" >&2; fail "building the consumer ($how) failed"; }
  "$dir/korvi_consumer" "$tuning" >"$dir.out" || fail "the consumer ($how) failed"
  diff -u "$work/expected" "$dir.out" || fail "the consumer ($how) disagrees with korvictl"
  echo "check-cmake-package: $how: ok ($(wc -l <"$dir.out") lines match korvictl)"
}

consume package -DCMAKE_PREFIX_PATH="$root/$prefix"
consume subdirectory -DKORVI_SOURCE_DIR="$root"
