#!/usr/bin/env bash
# The test job: build everything, the benchmarks included (built so that
# they keep compiling, never run here), with AddressSanitizer and
# UndefinedBehaviorSanitizer, warnings as errors; lint with clang-format and
# clang-tidy; run both fuzz targets
# briefly on their seeds; run the cimxml tool under valgrind on the
# examples; run the loader's tests, loads from several threads among them,
# under ThreadSanitizer; then run the whole suite.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh test
cmake -S . -B build/test -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DORV_WERROR=ON -DORV_SANITIZE="address;undefined" -DORV_BUILD_TESTS=ON \
  -DORV_BUILD_BENCHMARKS=ON
cmake --build build/test -j2

bash scripts/lint.sh build/test

export ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

FUZZ_SECONDS="${FUZZ_SECONDS:-20}" bash scripts/fuzz-smoke.sh

bash scripts/valgrind-check.sh

bash scripts/tsan-check.sh

cd build/test
ctest --output-on-failure -j2
