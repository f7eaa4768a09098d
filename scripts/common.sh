# Shared by ./run, ./test and .ci/run: packages, configuring, building, a display. Sourced, not run.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '== %s\n' "$*" >&2; }
fail() { printf 'error: %s\n' "$*" >&2; exit 1; }

# Installs what scripts/packages.txt lists and is missing; without the right to do so it names the packages.
ensure_packages() {
    local missing=() package
    while read -r package; do
        case "$package" in '' | '#'*) continue ;; esac
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done <"$root/scripts/packages.txt"
    [ ${#missing[@]} -eq 0 ] && return
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
            as_root=(sudo -n)
        else
            fail "missing packages; as root run: apt-get install ${missing[*]}"
        fi
    fi
    say "installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq || say "the package lists could not be renewed; going on with the old ones"
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2 ||
        fail "could not install: ${missing[*]}"
}

# build_tree DIR TARGET... -- CMAKE_OPTION...: configures once, then builds.
build_tree() {
    local dir=$1 targets=() options=()
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do targets+=("$1"); shift; done
    [ $# -gt 0 ] && shift
    options=("$@")
    command -v ccache >/dev/null && options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    if [ ! -f "$dir/build.ninja" ]; then
        say "configuring $dir"
        cmake -S "$root" -B "$dir" -G Ninja "${options[@]}" >&2 || fail "configuring failed"
    fi
    say "building $dir"
    cmake --build "$dir" --target "${targets[@]}" >&2 || fail "the build failed"
}

# Starts an X server of our own when there is no display, with a window manager for full screen and focus. It ends with
# the script.
ensure_display() {
    [ -n "${DISPLAY:-}" ] && [ "${1:-}" != own ] && return
    local fd_file
    fd_file=$(mktemp)
    Xvfb -displayfd 3 -screen 0 1280x1024x24 +extension GLX +extension RANDR -nolisten tcp 3>"$fd_file" >/dev/null 2>&1 &
    xvfb_pid=$!
    trap 'kill "${wm_pid:-}" "$xvfb_pid" 2>/dev/null; rm -f "'"$fd_file"'"' EXIT
    for _ in $(seq 100); do
        [ -s "$fd_file" ] && break
        kill -0 "$xvfb_pid" 2>/dev/null || fail "Xvfb did not start"
        sleep 0.1
    done
    DISPLAY=:$(tr -d '[:space:]' <"$fd_file")
    export DISPLAY
    if command -v openbox >/dev/null; then
        openbox --sm-disable >/dev/null 2>&1 &
        wm_pid=$!
    fi
}
