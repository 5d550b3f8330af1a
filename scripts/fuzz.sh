#!/usr/bin/env bash
# Builds the fuzz targets with clang's libFuzzer in build-fuzz/ and runs each
# for the given number of seconds (default 600), starting from the kept
# inputs. New failures land in build-fuzz/findings/<target>/; copy them into
# tests/fuzz/regressions/<target>/ once fixed. The loader imports in a child
# process, so a reader that crashes there leaves an artifact from the child
# while the fuzzer goes on: only a fuzzer that stops has found a fault of ours.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
seconds=${1:-600}

source scripts/install-deps.sh
install_deps
command -v clang++ >/dev/null || apt-get install -y --no-install-recommends clang

cmake -S . -B build-fuzz -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
      -DLUMORA_FUZZ=ON -DLUMORA_BUILD_TESTS=OFF -DLUMORA_BUILD_BENCH=OFF
cmake --build build-fuzz -j2 --target fuzz_load_model fuzz_read_image fuzz_drive_viewport

export LP_NUM_THREADS=2
export ASAN_OPTIONS=detect_leaks=1
export LSAN_OPTIONS=suppressions=$root/tests/sanitizers/lsan.supp:print_suppressions=0
for target in load_model read_image drive_viewport; do
    corpus=build-fuzz/corpus/$target
    findings=build-fuzz/findings/$target
    mkdir -p "$corpus" "$findings"
    echo "== fuzz_$target for $seconds s"
    build-fuzz/fuzz/fuzz_$target "$corpus" "tests/fuzz/regressions/$target" \
        -max_total_time="$seconds" -max_len=4096 -timeout=180 \
        -artifact_prefix="$findings/" -print_final_stats=1 || true
done
ls build-fuzz/findings/*/ 2>/dev/null
