#!/usr/bin/env bash
# Builds the Debian package with cpack, checks that its dependencies resolve
# on a Debian 12 system with nothing installed, installs it with dpkg into
# an empty root, and builds and runs the programs of tests/install against
# that root. Usage: check-deb.sh [build-dir]   (default: build-deb)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

if [[ ${1:-} == -h || ${1:-} == --help ]]; then
    sed -n '2,5p' "$0" | sed 's/^# \{0,1\}//'
    exit 0
fi
build=$(realpath -m "${1:-build-deb}")
for tool in cpack dpkg-deb dpkg-shlibdeps file apt-get; do
    if ! command -v "$tool" >/dev/null; then
        echo "$0: $tool is missing (scripts/install-deps.sh installs it)" >&2
        exit 1
    fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# /usr, so that the libraries land in the multiarch directory as Debian's do.
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
    -DLUMORA_BUILD_TESTS=OFF -DLUMORA_BUILD_BENCH=OFF
cmake --build "$build" -j "${JOBS:-2}"
rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB)
debs=("$build"/*.deb)
for deb in "${debs[@]}"; do
    echo "== $deb"
    dpkg-deb --field "$deb" Package Version Architecture Depends
done

# Every dependency must come from the archive: apt, told that nothing is
# installed, has to find them all.
mkdir -p "$work/apt"
: > "$work/apt/status"
apt-get install --simulate --no-install-recommends \
    -o Dir::State::Status="$work/apt/status" "${debs[@]}" > "$work/apt/plan" || {
    cat "$work/apt/plan" >&2
    echo "$0: the package's dependencies do not resolve" >&2
    exit 1
}
echo "apt would install $(grep -c '^Inst ' "$work/apt/plan") packages on an empty system"
grep '^Inst liblumora' "$work/apt/plan"

# An empty root with its own dpkg database: the package's files and its
# records, nothing of this machine. Its dependencies are this machine's.
fresh=$work/root
mkdir -p "$fresh/var/lib/dpkg/info" "$fresh/var/lib/dpkg/updates"
: > "$fresh/var/lib/dpkg/status"
# Its dependencies are not installed there, which dpkg reports at length.
dpkg --root="$fresh" --force-depends --force-script-chrootless -i "${debs[@]}" \
    > "$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log" >&2; exit 1; }
dpkg --root="$fresh" -L "$(dpkg-deb --field "${debs[0]}" Package)" | grep -E 'bin/|libexec/|\.so' 

"$root/tests/install/build-against.sh" "$fresh/usr" "$work"
echo "$0: the package installs and builds programs against it"
