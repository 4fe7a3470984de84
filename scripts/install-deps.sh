#!/usr/bin/env bash
# Installs the Debian packages that a job needs, only when one is missing.
# Usage: install-deps.sh main|test|bench
set -euo pipefail

packages=(cmake ninja-build g++ libboost-dev zlib1g-dev)
case "${1:-main}" in
  main) ;;
  test) packages+=(libgtest-dev libgmock-dev clang libclang-rt-14-dev pkgconf valgrind) ;;
  bench) packages+=(libbenchmark-dev libexpat1-dev libxml2-dev libpugixml-dev) ;;
  *) echo "usage: $0 main|test|bench" >&2; exit 2 ;;
esac

missing=()
for pkg in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$pkg")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
