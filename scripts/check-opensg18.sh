#!/usr/bin/env bash
# Checks libLumora against a genuine OpenSG 1.8 installed in PREFIX (headers
# in PREFIX/include/OpenSG, libraries in PREFIX/lib64 or PREFIX/lib):
#   1. the library's sources build unchanged against it, as C++11, the way a
#      1.8 application builds;
#   2. the differential program, built against the runtime and against 1.8,
#      renders the same frames on both (each channel within 1/255), with no
#      GL error and no warning on either side;
#   3. the simple geometry dump and the dump of matrix helpers, cameras,
#      volumes and field defaults are identical on both.
# Usage: scripts/check-opensg18.sh PREFIX      (work files in build-opensg18/)
set -euo pipefail
if [[ $# -ne 1 || $1 == -h || $1 == --help ]]; then
    sed -n '2,10p' "$0" | sed 's/^# \{0,1\}//'
    [[ $# -eq 1 ]] && exit 0 || exit 2
fi
prefix=$(cd "$1" && pwd)
root=$(cd "$(dirname "$0")/.." && pwd)
work=$root/build-opensg18
libdir=$prefix/lib64
[[ -d $libdir ]] || libdir=$prefix/lib
[[ -f $prefix/include/OpenSG/OSGConfig.h ]] || { echo "no OpenSG headers in $prefix/include/OpenSG" >&2; exit 2; }
mkdir -p "$work/include/Lumora" "$work/obj"
cd "$root"

step() { echo; echo "== $*"; }

step "runtime build"
[[ -f build/CMakeCache.txt ]] || cmake -S . -B build > /dev/null
cmake --build build -j2 --target differential_render simple_geometry_dump behaviour_dump

step "libLumora against OpenSG 1.8 ($prefix)"
for header in lumora/*/*.h; do ln -sf "$root/$header" "$work/include/Lumora/"; done
flags=(-std=gnu++11 -O2 -fPIC -Wall -Wextra -Werror -Wno-deprecated
       -D_OSG_HAVE_CONFIGURED_H_ -D__STDC_FORMAT_MACROS -msse2 -mfpmath=sse
       -I"$work/include" -I"$root/headless/include")
# 1.8's own headers are not clean under these warnings; they are not ours.
flags+=(-isystem "$prefix/include" -isystem "$prefix/include/OpenSG")
objects=()
for source in lumora/*/*.cpp; do
    object=$work/obj/$(basename "${source%.cpp}").o
    g++ "${flags[@]}" -c "$source" -o "$object"
    objects+=("$object")
done
g++ -shared -o "$work/libLumora18.so" "${objects[@]}" -L"$libdir" -Wl,-rpath,"$libdir" \
    -lOSGSystem -lOSGBase -lGL -lGLU
echo "built $(echo "${objects[@]}" | wc -w) sources into $work/libLumora18.so"

step "programs against OpenSG 1.8"
programFlags=()
for flag in "${flags[@]}"; do [[ $flag == -Werror ]] || programFlags+=("$flag"); done
g++ "${programFlags[@]}" -c headless/src/HeadlessContext.cpp -o "$work/obj/HeadlessContext.o"
g++ "${programFlags[@]}" -c apps/common/DemoScene.cpp -o "$work/obj/DemoScene.o"
g++ "${programFlags[@]}" -c tests/opensg18/DifferentialRender.cpp -o "$work/obj/DifferentialRender.o"
g++ -o "$work/differential_render" "$work/obj/DifferentialRender.o" "$work/obj/DemoScene.o" \
    "$work/obj/HeadlessContext.o" -L"$work" -lLumora18 -Wl,-rpath,"$work" \
    -L"$libdir" -Wl,-rpath,"$libdir" -lOSGSystem -lOSGBase -lepoxy -lEGL -lGL -lGLU -lpng
for dump in SimpleGeometryDump:simple_geometry_dump BehaviourDump:behaviour_dump; do
    g++ "${programFlags[@]}" "tests/opensg18/${dump%%:*}.cpp" -o "$work/${dump##*:}" \
        -L"$libdir" -Wl,-rpath,"$libdir" -lOSGSystem -lOSGBase -lGL -lGLU
done

failed=0
run() {  # name program outdir
    local name=$1 program=$2 out=$3
    rm -rf "$out"; mkdir -p "$out"
    if ! LP_NUM_THREADS=2 "$program" render "$out" > "$out.log" 2>&1; then
        echo "$name: exited with an error"; failed=1
    fi
    if grep -i -E "warning|gl error" "$out.log"; then
        echo "$name: logged the lines above"; failed=1
    fi
}
step "differential frames"
run runtime build/tests/differential_render "$work/frames-runtime"
run opensg18 "$work/differential_render" "$work/frames-opensg18"
cases=$(cd "$work/frames-runtime" && ls *.ppm | sed 's/\.ppm$//')
build/tests/differential_render compare "$work/frames-runtime" "$work/frames-opensg18" $cases \
    || failed=1

for dump in simple_geometry behaviour; do
    step "$dump dump"
    "build/tests/${dump}_dump" > "$work/$dump-runtime.txt" 2> "$work/$dump-runtime.log"
    "$work/${dump}_dump" > "$work/$dump-opensg18.txt" 2> "$work/$dump-opensg18.log"
    if diff -q "$work/$dump-runtime.txt" "$work/$dump-opensg18.txt" > /dev/null; then
        echo "identical ($(wc -l < "$work/$dump-runtime.txt") lines)"
    else
        diff "$work/$dump-runtime.txt" "$work/$dump-opensg18.txt" | head -20
        failed=1
    fi
done

echo
if [[ $failed -ne 0 ]]; then echo "check-opensg18: FAILED"; exit 1; fi
echo "check-opensg18: passed"
