#!/usr/bin/env bash
# Instructions per byte of the document, counted by callgrind, of one pass
# of our whole load next to our tokenizer (with the attribute map, and with
# attribute spans as the CIM-XML parser takes them), expat and pugixml on
# the same file. Only the pass itself is counted: reading the file into memory for the
# in-memory readers, preparing the namespace and releasing what was built are
# not. Builds build/profile (Release with debugging information, so that
# callgrind_annotate can show lines; benchmarks on) first.
#
#   scripts/profile.sh DOC [PREREQ]        DOC read by the class loader
#   scripts/profile.sh --instances DOC PREREQ
#                                          DOC read by the instance loader
#                                          into a namespace holding PREREQ
set -euo pipefail
cd "$(dirname "$0")/.."

loader=load
if [ "${1:-}" = "--instances" ]; then
  loader=instances
  shift
fi
if [ $# -lt 1 ] || [ ! -f "$1" ]; then
  echo "usage: scripts/profile.sh [--instances] DOC [PREREQ]" >&2
  exit 2
fi
doc="$1"
prereq="${2:-}"

command -v valgrind >/dev/null || { echo "profile.sh needs valgrind" >&2; exit 1; }
build=build/profile
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DORV_BUILD_TESTS=OFF \
  -DORV_BUILD_TOOLS=OFF -DORV_BUILD_BENCHMARKS=ON -DORV_FUZZ=OFF -DCMAKE_CXX_FLAGS=-g >/dev/null
cmake --build "$build" -j2 --target ProfileRun >/dev/null

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

printf '%-10s %14s %10s\n' reader instructions per-byte
for method in "$loader" tokenizer spans expat pugixml; do
  args=("$method" "$doc")
  [ -n "$prereq" ] && args+=("$prereq")
  if ! bytes="$(valgrind --tool=callgrind --callgrind-out-file="$scratch/$method.out" \
      --collect-atstart=no --toggle-collect='*MeasuredPass*' \
      "$build/bench/ProfileRun" "${args[@]}" 2>"$scratch/$method.log")"; then
    echo "$method: $(tail -n 1 "$scratch/$method.log")" >&2
    continue
  fi
  ir="$(callgrind_annotate "$scratch/$method.out" 2>/dev/null |
    sed -n 's/^ *\([0-9,]*\) .*PROGRAM TOTALS.*/\1/p' | tr -d ,)"
  awk -v m="$method" -v ir="$ir" -v b="$bytes" \
    'BEGIN { printf "%-10s %14.0f %10.1f\n", m, ir, ir / b }'
done
