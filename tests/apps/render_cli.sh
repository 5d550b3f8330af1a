#!/usr/bin/env bash
# lumora-render's exit status and messages for bad input, and the files a
# good run writes. Usage: render_cli.sh PATH-TO-lumora-render
set -u
renderer=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

# expected status | message the output must hold | arguments
cases=(
    "1|cannot open '$work/missing.obj'|$work/missing.obj"
    "1|'$work/garbage.obj'|$work/garbage.obj"
    "2|bad value 'abc' for --width|--width abc"
    "2|bad value '0' for --frames|--frames 0"
    "2|bad value '1e40' for --hdr-exposure|--hdr-exposure 1e40"
    "2|exceeds the OpenGL limit|--width 1000000 --height 16"
    "2|unknown option '--bogus'|--bogus"
    "2|--out needs a value|--out"
    "2|one model at a time|a.obj b.obj"
    "0|--debug-views PREFIX|--help"
)
printf 'v 0 0 0\nf 1 2 3 4 5\nthis is no model\n' > "$work/garbage.obj"
chmod 000 "$work/garbage.obj" 2>/dev/null
# Root reads any file; then the loader must refuse the garbage itself.
if [[ -r $work/garbage.obj ]]; then chmod 644 "$work/garbage.obj"; fi

for entry in "${cases[@]}"; do
    IFS='|' read -r status message args <<< "$entry"
    # shellcheck disable=SC2086
    output=$("$renderer" --out "$work/out.png" $args 2>&1)
    got=$?
    [[ $got == "$status" ]] || fail "$args: exit $got, expected $status"
    [[ $output == *"$message"* ]] || fail "$args: no \"$message\" in: $output"
done

# A good run writes the image and one picture per debug view, all of the
# image's size (a PNG holds width and height at bytes 16 to 23).
if ! "$renderer" --width 48 --height 24 --frames 2 --point-lights 2 --spot-lights 1 \
        --no-shadows --out "$work/demo.png" --debug-views "$work/dv" > "$work/log" 2>&1; then
    fail "demo run: $(cat "$work/log")"
fi
grep -q "lights" "$work/log" || fail "demo run printed no timing table"
expected_size=$(printf '%08x%08x' 48 24)
for name in demo dv-normals dv-diffuse dv-specular dv-shininess dv-emissive dv-depth dv-light; do
    file=$work/$name.png
    if [[ ! -s $file ]]; then
        fail "$name.png was not written"
        continue
    fi
    size=$(od -An -tx1 -j16 -N8 "$file" | tr -d ' \n')
    [[ $size == "$expected_size" ]] || fail "$name.png is $size, expected $expected_size"
done

# The views differ from each other; one picture written seven times would not.
distinct=$(md5sum "$work"/dv-*.png | cut -d' ' -f1 | sort -u | wc -l)
[[ $distinct -ge 6 ]] || fail "only $distinct different debug views"

# The batching switch draws a frame; its pixels are checked in the library tests.
if ! "$renderer" --width 48 --height 24 --frames 1 --point-lights 6 --spot-lights 2 \
        --no-shadows --light-batching --out "$work/batched.png" --debug-views "$work/bt" \
        > "$work/log" 2>&1; then
    fail "batched run: $(cat "$work/log")"
elif [[ ! -s $work/bt-light.png ]]; then
    fail "batched run wrote no light view"
fi

echo "$failures failures"
[[ $failures == 0 ]]
