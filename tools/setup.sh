# Sourced by ./run and ./test: installs Debian packages that are missing, and says so in a line.

build_packages="g++ cmake ninja-build ccache qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-l10n-tools libgl-dev libxcb1-dev libwayland-dev libxxhash-dev"
show_packages="fonts-vlgothic fonts-tlwg-loma-otf fonts-lohit-deva fonts-noto-color-emoji libqt6svg6 qt6-translations-l10n xvfb openbox xdotool imagemagick dbus dbus-daemon x11-utils"
test_packages="clang libclang-rt-dev lld llvm qt6-base-private-dev libsm-dev at-spi2-core python3-pyatspi fcitx5 fcitx5-anthy fcitx5-frontend-qt6 desktop-file-utils appstream weston sway qt6-wayland wmctrl xfwm4 x11-xkb-utils pcmanfm"

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# need PACKAGE…: installs those that are not installed yet.
need() {
    missing=
    for package in "$@"; do
        case "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" in
        installed) ;;
        *) missing="$missing $package" ;;
        esac
    done
    [ -n "$missing" ] || return 0
    echo "Installing$missing"
    # shellcheck disable=SC2086 # the names are separate words
    apt_get update && apt_get install -y --no-install-recommends $missing \
        || { echo "Could not install$missing; the lines above tell why." >&2; return 1; }
}

# apt_get ARGUMENT…: shows what apt-get prints only when it fails. While another holds one of its locks, as a new machine
# does that updates itself, it waits. apt-get itself can wait for the lock of the packages only, not for that of the lists.
apt_get() {
    apt_log=$(mktemp)
    apt_waited_for=
    until as_root env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get "$@" >"$apt_log" 2>&1; do
        held=$(sed -n 's/^E: Could not get lock //p' "$apt_log")
        if [ -z "$held" ]; then
            cat "$apt_log"
            rm -f "$apt_log"
            return 1
        fi
        [ "$held" = "$apt_waited_for" ] || echo "Waiting for the package manager, which is busy: $held"
        apt_waited_for=$held
        sleep 1
    done
    rm -f "$apt_log"
}

# quietly COMMAND…: shows what it prints only when it fails.
quietly() {
    quiet_log=$(mktemp)
    if "$@" >"$quiet_log" 2>&1; then
        rm -f "$quiet_log"
    else
        cat "$quiet_log"
        rm -f "$quiet_log"
        return 1
    fi
}
