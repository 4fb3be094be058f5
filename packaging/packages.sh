# SPDX-License-Identifier: GPL-3.0-or-later
# Debian and Ubuntu packages that builds, tests and benchmarks need; read by run, test and
# benchmark. needpackages NAME... installs those that are missing and says so.

buildpackages="g++ cmake ninja-build qt6-base-dev libgl-dev libeigen3-dev libspectra-dev
  libsuitesparse-dev libopenblas-dev libgtest-dev zlib1g-dev fonts-dejavu-core libqt6svg6"
# The screen and the hands of tests/window; a solver and readers of what tests/exchange writes.
testpackages="xvfb xdotool calculix-ccx python3-meshio python3-ezdxf"
# The solver of many processes; ./run and ./test do without.
scalepackages="libopenmpi-dev openmpi-bin libmumps-dev libmetis-dev libscotch-dev libpetsc-real-dev
  libslepc-real-dev pkg-config"
# What looks the packages over.
packingpackages="dpkg-dev lintian appstream desktop-file-utils xz-utils"

needpackages() {
    missing=""
    for p in "$@"; do
        case "$(dpkg-query -W -f '${db:Status-Status}' "$p" 2>/dev/null)" in
            installed) ;;
            *) missing="$missing $p" ;;
        esac
    done
    [ -z "$missing" ] && return 0
    echo "Installing:$missing"
    asroot=""
    [ "$(id -u)" = 0 ] || asroot="sudo"
    $asroot apt-get update -qq
    # shellcheck disable=SC2086
    $asroot env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
        --no-install-recommends $missing >/dev/null
}

# buildpreset PRESET TARGET...: configures and builds; the log is shown when something fails.
buildpreset() {
    preset=$1
    shift
    log=$(mktemp)
    if ! cmake --preset "$preset" >"$log" 2>&1; then
        cat "$log"
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
    if [ $# = 0 ]; then
        cmake --build --preset "$preset"
    else
        cmake --build --preset "$preset" --target "$@"
    fi
}
