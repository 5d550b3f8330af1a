#!/usr/bin/env bash
# Builds and runs the programs outside the tree against an installed
# prefix: with CMake, with osg-config and with pkg-config.
# Usage: build-against.sh PREFIX WORKDIR
set -euo pipefail

if [[ $# -ne 2 ]]; then
    echo "usage: $0 PREFIX WORKDIR" >&2
    exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
prefix=$1
work=$2
jobs=${JOBS:-2}

libosg=$(find "$prefix" -name 'libOSGSystem.so*' -print -quit)
if [[ -z $libosg ]]; then
    echo "$0: no libOSGSystem under $prefix" >&2
    exit 1
fi

cmake -S "$here" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$prefix"
cmake --build "$work/consumer" -j "$jobs"

# CMake installs the libraries without an RPATH to find each other.
libdir=$(dirname "$libosg")
with_libs() { LD_LIBRARY_PATH="$libdir${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}" "$@"; }
with_libs "$work/consumer/scenegraph_count"
with_libs "$work/consumer/system_gl_headers"

# The runtime finds its importer program relative to itself; a warning
# about it means the installed layout and the lookup disagree.
printf 'v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n' > "$work/triangle.obj"
with_libs "$work/consumer/load_model" "$work/triangle.obj" 2> "$work/load_model.log"
if grep -q osg-assimp-import "$work/load_model.log"; then
    cat "$work/load_model.log" >&2
    echo "$0: the installed runtime did not find its importer" >&2
    exit 1
fi

# Built by hand, as Makefiles of 1.8 programs build: flags from osg-config,
# and from pkg-config for libLumora. Both carry the prefix's run path.
osgconfig=$prefix/bin/osg-config
# shellcheck disable=SC2046
c++ $("$osgconfig" --cflags System) -Wall -Wextra "$here/main.cpp" \
    -o "$work/osg_config_count" $("$osgconfig" --libs System)
env -u LD_LIBRARY_PATH "$work/osg_config_count"
pcdir=$(dirname "$(find "$prefix" -name lumora.pc -print -quit)")
# shellcheck disable=SC2046
c++ $(PKG_CONFIG_PATH=$pcdir pkg-config --cflags lumora) -Wall -Wextra "$here/main.cpp" \
    -o "$work/pkg_config_count" $(PKG_CONFIG_PATH=$pcdir pkg-config --libs lumora)
env -u LD_LIBRARY_PATH "$work/pkg_config_count"
