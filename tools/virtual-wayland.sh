# Sourced: a Wayland compositor without a screen, for trying and testing the program.

# start_compositor NAME [SIZE [SCALE…]]: weston, or sway, which tiles, with one output of this size for each scale. Sets
# WAYLAND_DISPLAY, by its full name; the compositor lives until stop_compositor.
start_compositor() {
    compositor_name=$1
    compositor_size=${2:-1280x800}
    if [ $# -ge 2 ]; then shift 2; else shift $#; fi
    [ $# -gt 0 ] || set -- 1
    compositor_folder=$(mktemp -d)
    chmod 755 "$compositor_folder"
    case $compositor_name in
    weston) start_weston ;;
    sway) start_sway "$@" ;;
    *) echo "No compositor is known as $compositor_name." >&2; rm -rf "$compositor_folder"; return 1 ;;
    esac
    WAYLAND_DISPLAY=
    until [ -n "$WAYLAND_DISPLAY" ]; do
        kill -0 "$compositor_pid" 2>/dev/null \
            || { cat "$compositor_folder/log" >&2; rm -rf "$compositor_folder"; return 1; }
        sleep 0.05
        WAYLAND_DISPLAY=$(find "$compositor_folder" -maxdepth 1 -type s -name 'wayland*')
    done
    export WAYLAND_DISPLAY
    unset DISPLAY
}

# A panel would take room from maximised windows at whatever time it gets ready, and what fades in would be grey in
# pictures, which are for who debugs it.
start_weston() {
    printf '[shell]\npanel-position=none\nstartup-animation=none\nanimation=none\n' >"$compositor_folder/weston.ini"
    XDG_RUNTIME_DIR=$compositor_folder weston --backend=headless-backend.so --use-pixman --socket=wayland --debug \
        --width="${compositor_size%x*}" --height="${compositor_size#*x}" --config="$compositor_folder/weston.ini" \
        --idle-time=0 >"$compositor_folder/log" 2>&1 &
    compositor_pid=$!
}

start_sway() {
    {
        echo 'xwayland disable'
        echo 'default_border none'
        sway_output=0
        for sway_scale in "$@"; do
            sway_output=$((sway_output + 1))
            echo "output HEADLESS-$sway_output resolution $compositor_size scale $sway_scale"
        done
    } >"$compositor_folder/config"
    SWAYSOCK=$compositor_folder/calls
    export SWAYSOCK
    # It wants no rights of root's; whoever is on this machine may show a window.
    sway_without_rights=
    if [ "$(id -u)" = 0 ]; then
        chown 65534:65534 "$compositor_folder"
        sway_without_rights='setpriv --reuid=65534 --regid=65534 --clear-groups'
    fi
    (
        umask 0
        # shellcheck disable=SC2086 # it is several words or none
        XDG_RUNTIME_DIR=$compositor_folder WLR_BACKENDS=headless WLR_HEADLESS_OUTPUTS=$# WLR_LIBINPUT_NO_DEVICES=1 \
            WLR_RENDERER=pixman exec $sway_without_rights sway --config "$compositor_folder/config"
    ) >"$compositor_folder/log" 2>&1 &
    compositor_pid=$!
}

stop_compositor() {
    kill "$compositor_pid" 2>/dev/null || true
    wait "$compositor_pid" 2>/dev/null || true
    rm -rf "$compositor_folder"
    unset WAYLAND_DISPLAY SWAYSOCK
}

# take_compositor_picture FILE [OUTPUT]: what is on its outputs, or on one of them, the first being 1.
take_compositor_picture() {
    case $compositor_name in
    weston)
        (cd "$compositor_folder" && XDG_RUNTIME_DIR=$compositor_folder weston-screenshooter)
        mv "$compositor_folder"/wayland-screenshot-*.png "$1"
        ;;
    sway) XDG_RUNTIME_DIR=$compositor_folder grim ${2:+-o "HEADLESS-$2"} "$1" ;;
    esac
}
