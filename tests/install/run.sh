#!/usr/bin/env bash
# Installs the project into a temporary prefix and builds and runs a program
# outside the tree against it. Usage: run.sh [existing-build-dir]
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

jobs=${JOBS:-2}
if [[ $# -ge 1 && -n $1 ]]; then
    build=$1
else
    build=$work/build
    cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release \
        -DLUMORA_BUILD_TESTS=OFF -DLUMORA_BUILD_BENCH=OFF
fi

cmake --build "$build" -j "$jobs"
cmake --install "$build" --prefix "$work/prefix"

"$here/build-against.sh" "$work/prefix" "$work"
