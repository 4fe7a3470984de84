#!/usr/bin/env bash
# Builds the libFuzzer targets (fuzz/*Fuzzer.cpp) with clang in build/fuzz
# and runs each for FUZZ_SECONDS (default 30) from its seed corpus,
# fuzz/corpus/<short name>/, with its dictionary fuzz/<short name>.dict when
# there is one. New inputs go to a scratch directory, never into the seeds.
# A crash, leak or timeout makes the script fail; the input that caused it is
# left in build/fuzz/artifacts/.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${FUZZ_SECONDS:-30}"
build=build/fuzz

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DORV_FUZZ=ON -DORV_SANITIZE="address;undefined" \
  -DORV_BUILD_TESTS=OFF -DORV_BUILD_TOOLS=OFF

targets=()
for source in fuzz/*Fuzzer.cpp; do
  targets+=("$(basename "$source" .cpp)")
done
cmake --build "$build" -j2 --target "${targets[@]}"

mkdir -p "$build/artifacts"
for name in "${targets[@]}"; do
  short="${name%Fuzzer}"
  short="${short%Tokenizer}"
  short="${short%Parser}"
  short="$(echo "$short" | tr '[:upper:]' '[:lower:]')"
  scratch="$(mktemp -d)"
  args=(-max_total_time="$seconds" -timeout=5 -rss_limit_mb=2048
        -print_final_stats=1 -artifact_prefix="$build/artifacts/$name-")
  if [ -f "fuzz/$short.dict" ]; then
    args+=(-dict="fuzz/$short.dict")
  fi
  echo "== $name: ${seconds}s on fuzz/corpus/$short"
  status=0
  "$build/fuzz/$name" "${args[@]}" "$scratch" "fuzz/corpus/$short" || status=$?
  rm -rf "$scratch"
  if [ "$status" -ne 0 ]; then
    echo "$name found a problem (exit $status); see $build/artifacts/" >&2
    exit "$status"
  fi
done
