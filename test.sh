#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test through CTest.
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-deps
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
ctest --test-dir build --output-on-failure -j2 "$@"
