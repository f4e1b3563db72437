#!/usr/bin/env bash
# Checks the client interface package vendor.korvi.hardware.tcs@2.0 under interfaces/tcs/2.0:
# hidl-gen reads it, its Android.bp is what hidl-gen makes of it, and the host stand-in header of
# ITcsCallbacks declares the same methods as the header hidl-gen generates from the .hal.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
package=vendor.korvi.hardware.tcs@2.0
# The platform's base interface is not on this machine: scripts/hidl holds an empty stand-in.
roots=(-R -r vendor.korvi.hardware:interfaces -r android.hidl:scripts/hidl)
standin=platform/hidl/include/vendor/korvi/hardware/tcs/2.0/ITcsCallbacks.h
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

fail() { echo "check-interfaces: $*" >&2; exit 1; }

hidl-gen -p "$root" -Lcheck "${roots[@]}" "$package" || fail "hidl-gen rejects $package"

hidl-gen -p "$root" -o "$out/bp" -Landroidbp "${roots[@]}" "$package"
bpfmt -w "$out/bp/interfaces/tcs/2.0/Android.bp"
diff -u "$out/bp/interfaces/tcs/2.0/Android.bp" interfaces/tcs/2.0/Android.bp \
    || fail "interfaces/tcs/2.0/Android.bp differs from what hidl-gen -Landroidbp makes"

hidl-gen -p "$root" -o "$out/h" -Lc++-headers "${roots[@]}" "$package"
generated=$out/h/vendor/korvi/hardware/tcs/2.0/ITcsCallbacks.h
if [ ! -f "$standin" ]; then
  echo "check-interfaces: SKIPPED the stand-in comparison: $standin does not exist in this tree"
else
  /usr/bin/python3 scripts/compare_interface_header.py "$generated" "$standin" \
      || fail "$standin does not match interfaces/tcs/2.0/ITcsCallbacks.hal"
fi
echo "check-interfaces: $package ok"
