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

cmake -S "$here" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/prefix"
cmake --build "$work/consumer" -j "$jobs"

# The installed libraries carry no RPATH to find each other.
export LD_LIBRARY_PATH="$work/prefix/lib:$work/prefix/lib64${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"
"$work/consumer/scenegraph_count"
"$work/consumer/system_gl_headers"

# Built by hand, as Makefiles of 1.8 programs build: flags from osg-config,
# and from pkg-config for libLumora. Both carry the prefix's run path.
osgconfig=$work/prefix/bin/osg-config
# shellcheck disable=SC2046
c++ $("$osgconfig" --cflags System) -Wall -Wextra "$here/main.cpp" \
    -o "$work/osg_config_count" $("$osgconfig" --libs System)
env -u LD_LIBRARY_PATH "$work/osg_config_count"
pcdir=$(dirname "$(find "$work/prefix" -name lumora.pc)")
# shellcheck disable=SC2046
c++ $(PKG_CONFIG_PATH=$pcdir pkg-config --cflags lumora) -Wall -Wextra "$here/main.cpp" \
    -o "$work/pkg_config_count" $(PKG_CONFIG_PATH=$pcdir pkg-config --libs lumora)
env -u LD_LIBRARY_PATH "$work/pkg_config_count"
