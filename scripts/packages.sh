# Sourced by the scripts beside it: what they need of Debian, installed when it is missing, as root or through sudo.

base_packages="g++ cmake ninja-build python3-minimal libboost-dev libexpat1-dev libcli11-dev"
test_packages="$base_packages python3 libc6-dev binutils googletest locales pkg-config"
bench_peers="qt6-base-dev libpoco-dev libxerces-c-dev libxml2-dev libxml2-utils liburiparser-dev libssl-dev libicu-dev shared-mime-info"
all_packages="$test_packages clang g++-multilib libclang-rt-dev ccache libxml2-utils valgrind clang-format clang-tidy codespell"

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null 2>&1; then
        sudo "$@"
    else
        echo "$(basename "$0"): must be root, or have sudo, for: $*" >&2
        return 1
    fi
}

# An index of somebody else's that cannot be reached is no reason to stop: what is missing shows itself later.
update_index() {
    as_root apt-get -q update || echo "$(basename "$0"): apt-get update failed, going on with what is known" >&2
}

is_installed() {
    dpkg-query -W -f '${db:Status-Abbrev}\n' "$1" 2>/dev/null | grep -q '^ii' && return
    # Debian's versions of Boost exclude each other, and any of them will do.
    [ "$1" = libboost-dev ] && is_installed 'libboost1.*-dev'
}

# install_missing PACKAGE...
# Never at the cost of a package that is there: apt-get stops then, and the user decides.
install_missing() {
    missing=
    for package in "$@"; do
        is_installed "$package" || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    echo "Installing:$missing"
    update_index
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 --no-install-recommends \
        --no-remove install $missing
}
