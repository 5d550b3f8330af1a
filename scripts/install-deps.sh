#!/usr/bin/env bash
# Installs the Debian 12 packages the build needs; does nothing when all are
# present. Meant to be sourced (defines install_deps) or run directly.

LUMORA_DEB_PACKAGES=(
    build-essential cmake pkg-config
    libepoxy-dev libegl-dev libgl-dev libegl-mesa0 libgl1-mesa-dri
    freeglut3-dev libboost-dev libboost-random-dev libpng-dev
    libgtest-dev libgmock-dev libbenchmark-dev libassimp-dev libjpeg-dev
    libstb-dev libtiff-dev libopenexr-dev libcli11-dev
    assimp-testmodels xvfb xauth
    dpkg-dev file
)

install_deps() {
    local missing=() pkg
    for pkg in "${LUMORA_DEB_PACKAGES[@]}"; do
        dpkg -s "$pkg" >/dev/null 2>&1 || missing+=("$pkg")
    done
    [[ ${#missing[@]} -eq 0 ]] && return 0

    echo "Installing: ${missing[*]}"
    local sudo=()
    [[ $(id -u) -ne 0 ]] && sudo=(sudo)
    "${sudo[@]}" apt-get update
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
}

if [[ ${BASH_SOURCE[0]} == "$0" ]]; then
    set -euo pipefail
    install_deps
fi
