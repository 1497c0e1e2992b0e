# Shared by ./run, ./test and .ci/run: where we are, what is installed, and how a step announces itself.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

step() { printf '\n== %s\n' "$*"; }

# install_packages KIND...: installs the packages of packaging/debian-packages.txt that are missing.
install_packages() {
    local kinds missing=() kind package
    kinds=" $* "
    while read -r kind package; do
        [[ $kind == '#' || -z $package || $kinds != *" $kind "* ]] && continue
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done < <(grep -v '^#' packaging/debian-packages.txt)
    if [[ ${#missing[@]} -eq 0 ]]; then
        echo "All packages are installed."
        return
    fi
    echo "Installing: ${missing[*]}"
    local root=()
    if [[ $(id -u) -ne 0 ]]; then
        command -v sudo >/dev/null || { echo "Not root and no sudo: please install these packages yourself." >&2; exit 3; }
        root=(sudo)
    fi
    local log
    log=$(mktemp)
    if ! { "${root[@]}" apt-get update -q &&
           "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qy --no-install-recommends \
               "${missing[@]}"; } >"$log" 2>&1; then
        echo "Installing the packages failed; the end of the log:" >&2
        tail -n 20 "$log" >&2
        rm -f "$log"
        exit 3
    fi
    rm -f "$log"
}

# build PRESET [TARGET...]
build() {
    local preset=$1 log
    shift
    log=$(mktemp)
    if ! cmake --preset "$preset" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        exit 1
    fi
    rm -f "$log"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
