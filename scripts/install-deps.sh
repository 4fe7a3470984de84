#!/usr/bin/env bash
# Installs the Debian packages that a job needs, only when one is missing.
# Works on Debian stable and Ubuntu LTS releases alike.
# Usage: install-deps.sh main|test|bench
set -euo pipefail

# Every job's build includes the cimxml tool, which parses its command line
# with CLI11, and the writers' library, whose JSON writer writes through
# RapidJSON (both header-only).
packages=(cmake ninja-build g++ libboost-dev zlib1g-dev libcli11-dev rapidjson-dev)
case "${1:-main}" in
  main) ;;
  # The test job also builds the benchmarks, so that they cannot rot.
  test) packages+=(libgtest-dev libgmock-dev clang clang-format clang-tidy pkgconf valgrind
                   libbenchmark-dev libexpat1-dev libxml2-dev libpugixml-dev) ;;
  bench) packages+=(libbenchmark-dev libexpat1-dev libxml2-dev libpugixml-dev) ;;
  *) echo "usage: $0 main|test|bench" >&2; exit 2 ;;
esac

installed() {
  dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed'
}

updated=0
update_once() {
  if [ "$updated" -eq 0 ]; then
    apt-get update -qq
    updated=1
  fi
}

# install_missing PACKAGE...: installs those of the packages that are missing.
install_missing() {
  local missing=()
  local pkg
  for pkg in "$@"; do
    installed "$pkg" || missing+=("$pkg")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    update_once
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
  fi
}

# available PACKAGE: true when the archive has a version of it to install.
available() {
  local candidate
  candidate="$(apt-cache policy "$1" 2>/dev/null | sed -n 's/^ *Candidate: *//p')"
  [ -n "$candidate" ] && [ "$candidate" != "(none)" ]
}

install_missing "${packages[@]}"

# The fuzz targets link libFuzzer and the sanitizer runtimes of the clang
# that was installed. Releases that package them apart name the package
# after clang's major version (libclang-rt-14-dev goes with clang 14); older
# ones ship them inside clang's own packages, and then there is nothing more
# to install.
if [ "${1:-main}" = test ]; then
  major="$(clang --version | sed -n 's/.*clang version \([0-9][0-9]*\)\..*/\1/p' | head -n 1)"
  if [ -z "$major" ]; then
    echo "install-deps: cannot tell clang's version from 'clang --version'" >&2
    exit 1
  fi
  runtime="libclang-rt-$major-dev"
  if ! installed "$runtime"; then
    update_once
    if available "$runtime"; then
      install_missing "$runtime"
    else
      echo "No $runtime in this release: clang $major carries its own runtime"
    fi
  fi
fi
