#!/usr/bin/env bash
# Installs what the build, the tests, the benchmarks, the fuzzers and the checks of the device
# recipe and the interface package need. Idempotent: it asks apt only for packages that are
# missing, and refreshes the package lists at most once.
set -euo pipefail

packages=(
  cmake make g++ libxml2-dev libsqlite3-dev sqlite3 libssl-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  android-libutils-dev android-liblog-dev android-libbase-dev android-libcutils-dev
  clang libclang-rt-dev
  blueprint-tools hidl-gen mini-soong dpkg-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
echo "installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
