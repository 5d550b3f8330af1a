#!/usr/bin/env bash
# Renders one small frame of the demo under valgrind's memcheck; fails on
# any memory error or definite leak outside the GL driver.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

source scripts/install-deps.sh
install_deps
command -v valgrind >/dev/null || apt-get install -y --no-install-recommends valgrind

cmake -S . -B build -DLUMORA_WERROR=ON
cmake --build build -j2 --target lumora-render
out=$(mktemp -d)
# --keep-debuginfo: the driver is unloaded before the leak report, and its
# suppressions need its name.
LP_NUM_THREADS=1 valgrind --leak-check=full --show-leak-kinds=definite \
    --errors-for-leak-kinds=definite --error-exitcode=3 --keep-debuginfo=yes \
    --suppressions=tests/sanitizers/valgrind.supp \
    build/apps/lumora-render --width 64 --height 36 --frames 1 \
        --point-lights 4 --spot-lights 1 --no-shadows --aa --hdr --out "$out/frame.png"
