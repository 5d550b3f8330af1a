#!/usr/bin/env bash
# Builds a Release tree and renders the demo scene headlessly to demo.png,
# printing the time each pass took.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

source scripts/install-deps.sh
install_deps

# The libraries compile in batches of sources: a fresh build reads their
# headers a few times instead of once per source.
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DLUMORA_UNITY_BUILD=ON
# Only what it runs: the renderer and the libraries under it. The test
# command builds the rest.
cmake --build build -j2 --target lumora-render

renderer=build/apps/lumora-render
if [[ ! -x $renderer ]]; then
    echo "$renderer was not built; nothing to run" >&2
    exit 1
fi
# The renderer's defaults (batched lights, shadow maps kept while the camera
# stands still), then the library's own on the same frames.
"$renderer" --out demo.png --compare-defaults "$@"
