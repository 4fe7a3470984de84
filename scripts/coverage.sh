#!/usr/bin/env bash
# Line and branch coverage of the libraries (core/, core_api/, xml/, cimxml/,
# populate/) under the whole ctest suite, measured with clang's source-based
# coverage in build/coverage, without sanitizers.
#
# Every process the suite starts (the test programs, the cimxml tool run as a
# process, the fuzz corpus replays, the installed-package consumers) writes
# its own raw profile, named by process id and module, so that none
# overwrites another; they are merged, and llvm-cov reads both shared
# libraries against the merged profile.
#
# Prints the per-file table, then the totals as "line coverage: X%" and
# "branch coverage: Y%". A failing test fails the script, after the report.
set -euo pipefail
cd "$(dirname "$0")/.."

build=build/coverage

bash scripts/install-deps.sh test

# llvm-cov and llvm-profdata must read what this clang writes: take the tools
# of clang's own major version, installing them when they are missing.
major="$(clang --version | sed -n 's/.*clang version \([0-9][0-9]*\)\..*/\1/p' | head -n 1)"
if [ -z "$major" ]; then
  echo "cannot tell the version of clang" >&2
  exit 1
fi
if ! command -v "llvm-cov-$major" >/dev/null || ! command -v "llvm-profdata-$major" >/dev/null; then
  echo "Installing: llvm-$major"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "llvm-$major"
fi
llvmCov="llvm-cov-$major"
llvmProfdata="llvm-profdata-$major"

# Warnings stay warnings: the test build (gcc) is the one that treats them
# as errors, and clang's set differs.
flags="-fprofile-instr-generate -fcoverage-mapping"
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
  -DCMAKE_EXE_LINKER_FLAGS=-fprofile-instr-generate \
  -DCMAKE_SHARED_LINKER_FLAGS=-fprofile-instr-generate \
  -DORV_WERROR=OFF -DORV_SANITIZE= -DORV_FUZZ=OFF \
  -DORV_BUILD_TESTS=ON -DORV_BUILD_TOOLS=ON -DORV_BUILD_BENCHMARKS=OFF
cmake --build "$build" -j2

profiles="$PWD/$build/profiles"
rm -rf "$profiles"
mkdir -p "$profiles"
status=0
(cd "$build" && LLVM_PROFILE_FILE="$profiles/%p-%m.profraw" ctest -j2 --output-on-failure) ||
  status=$?

shopt -s nullglob
raw=("$profiles"/*.profraw)
if [ ${#raw[@]} -eq 0 ]; then
  echo "the suite wrote no profiles" >&2
  exit 1
fi
"$llvmProfdata" merge -sparse "${raw[@]}" -o "$build/coverage.profdata"

# llvm-cov takes the first binary as its positional argument, any more as
# -object.
libraries=()
for name in orvcore orvcimxml; do
  library="$(find "$build" -maxdepth 2 -name "lib$name.so" -print -quit)"
  if [ -z "$library" ]; then
    echo "lib$name.so is not in $build" >&2
    exit 1
  fi
  if [ ${#libraries[@]} -gt 0 ]; then
    libraries+=(-object)
  fi
  libraries+=("$library")
done

# Only the libraries' own sources: tests, tools, benchmarks, fuzzers,
# examples and system headers are left out.
sources=()
for dir in core core_api xml cimxml populate; do
  sources+=("$PWD/$dir")
done
report="$build/coverage.txt"
"$llvmCov" report "${libraries[@]}" -instr-profile="$build/coverage.profdata" \
  "${sources[@]}" | tee "$report"

# TOTAL  regions missed cover  functions missed executed  lines missed cover
#        branches missed cover
awk '$1 == "TOTAL" {
  print "line coverage: " $10
  print "branch coverage: " $13
}' "$report"

if [ "$status" -ne 0 ]; then
  echo "some tests failed (ctest exit $status); the coverage above counts them as run" >&2
fi
exit "$status"
