#!/usr/bin/env bash
# The main job: build the library and the cimxml tool, then load the bundled
# example schema and print it as MOF.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh main
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DORV_BUILD_TESTS=OFF -DORV_BUILD_TOOLS=ON
cmake --build build/release -j2
./build/release/tools/cimxml --mof "$@"
