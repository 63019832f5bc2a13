# Shared by play.sh and test.sh: installs what is missing and builds a preset.
# Sourced from the repository's root, with `set -eu`.

say() { printf '\n== %s\n' "$*"; }

fail() {
    printf '\n== %s\n' "$*" >&2
    exit 1
}

wanted_packages() { sed -e '/^#/d' -e '/^$/d' setup/packages.txt; }

missing_packages() {
    for package in $(wanted_packages) "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
            printf '%s ' "$package"
    done
}

# Installs the packages of setup/packages.txt and the ones named.
install_packages() {
    command -v dpkg-query >/dev/null ||
        fail "This set-up is for Debian 12. On another system install by hand: $(wanted_packages | tr '\n' ' ')"
    missing=$(missing_packages "$@")
    [ -z "$missing" ] && return 0
    command="apt-get install -y --no-install-recommends $missing"
    if [ "$(id -u)" = 0 ]; then
        as_root=
    elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
        as_root=sudo
    elif command -v sudo >/dev/null && [ -t 0 ]; then
        as_root=sudo
    else
        fail "Some packages are missing. As root, run: apt-get update && $command"
    fi
    say "Installing: $missing"
    $as_root apt-get update -q
    $as_root env DEBIAN_FRONTEND=noninteractive $command
}

# build <preset> [target...]
build() {
    preset=$1
    shift
    say "Configuring ($preset)"
    cmake --preset "$preset" >"build-$preset.log" 2>&1 || {
        cat "build-$preset.log"
        rm -f "build-$preset.log"
        fail "The configuration failed; the lines above say why."
    }
    rm -f "build-$preset.log"
    say "Building ($preset)"
    cmake --build --preset "$preset" ${1:+--target "$@"} || fail "The build failed; the lines above say why."
}
