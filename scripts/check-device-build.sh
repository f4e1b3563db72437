#!/usr/bin/env bash
# Keeps the device recipe from rotting on a machine without the platform sources:
#  1. bpfmt finds every .bp file formatted;
#  2. Android.bp builds every source of src/, tools/korvictl and tests/, and lists no missing file
#     (scripts/check_device_recipe.py);
#  3. mini-soong turns Android.bp, with the host recipes of the stand-ins (platform/*/host.bp),
#     into a Makefile that builds libkrvaxservice on this machine from the device recipe alone,
#     linked with no undefined symbol against the stand-ins and Debian's Android host libraries;
#  4. given the CMake build directory, the sources of the device test program, built there, link
#     into one program whose tests all pass together, as they must on a device.
# Usage: scripts/check-device-build.sh [BUILD_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=${1:-}

fail() { echo "check-device-build: $*" >&2; exit 1; }

mapfile -t recipes < <(find . \( -path './.*' -o -path './build*' \) -prune -o -name '*.bp' -print | sort)
unformatted=$(bpfmt -l "${recipes[@]}")
if [ -n "$unformatted" ]; then
  echo "$unformatted" | sed 's/^/  /' >&2
  fail "bpfmt would reformat the files above (bpfmt -w FILE fixes them)"
fi
echo "check-device-build: ${#recipes[@]} recipes formatted"

/usr/bin/python3 scripts/check_device_recipe.py || fail "Android.bp and the tree disagree"
echo "check-device-build: Android.bp covers the tree"

# The host build runs in a directory of its own holding copies of the recipes, with the sources
# linked in: mini-soong reads every .bp below it and writes its outputs beside them.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp Android.bp "$work/"
for d in src tools; do ln -s "$root/$d" "$work/$d"; done
mkdir -p "$work/platform"
for dir in platform/*/; do
  name=$(basename "$dir")
  if [ -f "$dir/host.bp" ] && compgen -G "$dir*.cpp" >/dev/null; then
    mkdir "$work/platform/$name"
    for entry in "$dir"*; do ln -s "$root/$entry" "$work/platform/$name/"; done
    rm "$work/platform/$name/host.bp"
    cp "$dir/host.bp" "$work/platform/$name/host.bp"
  fi
done

# Device modules the host has under another name or not at all. The generated Makefile wants a
# file NAME.so for each (as a prerequisite) and links it as -l with the name less its first three
# letters ("libsqlite" -> -lsqlite; the interface package vendor.korvi.hardware.tcs@2.0 becomes
# -ldor.korvi...): the shims below, in the build directory, answer both.
echo 'INPUT(-lsqlite3)' >"$work/libsqlite.so"
/usr/bin/python3 - "$work" >"$work/empty-libs" <<'PY'
import sys
from pathlib import Path
from mini_soong.parser import soong
work = Path(sys.argv[1])
host = set()
for recipe in work.glob("platform/*/host.bp"):
    host |= {m.arguments["name"] for m in soong.parseString(recipe.read_text())}
(work / "stand-ins").write_text("".join(f"{name}.so\n" for name in sorted(host)))
lib = {m.arguments["name"]: m.arguments for m in soong.parseString((work / "Android.bp").read_text())
       if "name" in m.arguments}["libkrvaxservice"]
multiarch = sorted(Path("/usr/lib").glob("*-linux-gnu"))[0]
for name in lib["shared_libs"]:
    provided = name in host or name == "libsqlite" or any(
        (d / f"{name}.so").exists() for d in (multiarch, multiarch / "android"))
    if not provided:
        print(name)
PY
while read -r name; do
  # With no stand-in in this tree (or a header-only one), the module links as an empty library;
  # any symbol the library needs from it stays undefined and fails the link below.
  echo "check-device-build: no host library for $name in this tree; linking an empty one"
  : | gcc -x c -shared -o "$work/$name.so" -
  [ -e "$work/lib${name:3}.so" ] || ln -s "$name.so" "$work/lib${name:3}.so"
done <"$work/empty-libs"

cpp_std=$(/usr/bin/python3 -c '
from mini_soong.parser import soong
for m in soong.parseString(open("Android.bp").read()):
    if m.arguments.get("name") == "libkrvaxservice_defaults":
        print(m.arguments.get("cpp_std", "c++17"))')

(cd "$work" && mini-soong '**/*.bp' Makefile 2>mini-soong.log) \
    || { cat "$work/mini-soong.log" >&2; fail "mini-soong could not read the recipes"; }
android_libs=$(dirname "$(find /usr/lib -path '*/android/libutils.so' | head -1)")
# The stand-ins are built first, and they and the shims of the build directory (-L.) come before
# Debian's libraries of the same names (Debian's libcutils lacks the property functions).
mapfile -t standins <"$work/stand-ins"
make -C "$work" "${standins[@]}" libkrvaxservice.so \
    CPPFLAGS="-isystem /usr/include/android $(xml2-config --cflags 2>/dev/null || echo -I/usr/include/libxml2)" \
    CFLAGS="-O0 -fPIC -Werror" CXXFLAGS="-std=$cpp_std" \
    LDFLAGS="-L. -L$android_libs -Wl,-z,defs -Wl,-rpath,$android_libs" \
    >"$work/make.log" 2>&1 || { tail -40 "$work/make.log" >&2; fail "the host build of Android.bp failed"; }
[ -f "$work/libkrvaxservice.so" ] || fail "the host build of Android.bp made no libkrvaxservice.so"
needed=$(readelf -d "$work/libkrvaxservice.so" | sed -n 's/.*Shared library: \[\(.*\)\]/\1/p' | tr '\n' ' ')
echo "check-device-build: libkrvaxservice built from Android.bp (links $needed)"

[ -n "$build" ] || exit 0
objects=()
while read -r src; do
  dir=$(basename "$(dirname "$src")")
  obj=$(find "$build/tests/CMakeFiles" -path "*/$dir/$(basename "$src").o" | head -1)
  [ -n "$obj" ] || fail "$src is not built in $build (make build first)"
  objects+=("$obj")
done < <(/usr/bin/python3 scripts/check_device_recipe.py --test-sources)
g++ -o "$work/libkrvaxservice_test" "${objects[@]}" -L"$build" -lkrvaxservice \
    -lgmock -lgtest_main -lgtest -L"$android_libs" -llog -lutils -lbase -lcutils \
    -lxml2 -lsqlite3 -lcrypto -pthread -Wl,-rpath,"$root/$build:$android_libs" \
    || fail "the device test program's sources do not link into one program"
(cd "$work" && ./libkrvaxservice_test --gtest_brief=1 >test.log 2>&1) \
    || { tail -40 "$work/test.log" >&2; fail "the device test program fails"; }
echo "check-device-build: device test program: ${#objects[@]} sources, $(sed -n 's/.*PASSED.* \([0-9]*\) tests\?\./\1/p' "$work/test.log") tests pass in one process"
