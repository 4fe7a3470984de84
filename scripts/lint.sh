#!/usr/bin/env bash
# Lint: clang-format over every C++ source of the project, then clang-tidy
# (the checked-in .clang-tidy, warnings as errors) over the library and tool
# sources. Fails on any finding.
# Usage: lint.sh BUILD_DIR   (a configured build with compile_commands.json)
set -euo pipefail
cd "$(dirname "$0")/.."
build="${1:?usage: lint.sh BUILD_DIR}"

# Both tools come with the clang that the test job installs; take the
# unversioned names where they exist, else the highest versioned ones.
pick() {
  if command -v "$1" >/dev/null; then echo "$1"; return; fi
  compgen -c "$1-" | grep -E "^$1-[0-9]+$" | sort -t- -k3 -n | tail -1
}
format=$(pick clang-format)
tidy=$(pick clang-tidy)
runner=$(pick run-clang-tidy)

mapfile -t all < <(git ls-files '*.cpp' '*.h')
echo "lint: $format on ${#all[@]} files"
"$format" --dry-run --Werror "${all[@]}"

mapfile -t library < <(git ls-files 'core/*.cpp' 'xml/*.cpp' 'cimxml/*.cpp' \
  'cimxml/states/*.cpp' 'populate/*.cpp' 'write/*.cpp' 'tools/*.cpp')
echo "lint: $tidy on ${#library[@]} files"
if [ -n "$runner" ]; then
  "$runner" -quiet -j 2 -clang-tidy-binary "$(command -v "$tidy")" -p "$build" "${library[@]}"
else
  for source in "${library[@]}"; do "$tidy" --quiet -p "$build" "$source"; done
fi
echo "lint: no findings"
