# Sourced: a virtual X display with a window manager, for trying and testing the program where there is no screen.

# start_display GEOMETRY [WINDOW-MANAGER [OPTION…]]: sets DISPLAY; the display lives until stop_display. The window manager
# is openbox, or xfwm4, or none; the options are those of the X server.
start_display() {
    display_geometry=$1 display_manager=${2:-openbox}
    if [ $# -ge 2 ]; then shift 2; else shift; fi
    display_file=$(mktemp)
    Xvfb -displayfd 3 -screen 0 "$display_geometry" -noreset -nolisten tcp "$@" 3>"$display_file" 2>/dev/null &
    xvfb_pid=$!
    until [ -s "$display_file" ]; do
        kill -0 "$xvfb_pid" 2>/dev/null || { echo "The virtual display did not start." >&2; return 1; }
        sleep 0.05
    done
    DISPLAY=:$(cat "$display_file")
    export DISPLAY
    unset WAYLAND_DISPLAY
    rm -f "$display_file"
    start_window_manager "$display_manager" || { stop_display; return 1; }
}

start_window_manager() {
    window_manager_home=$(mktemp -d)
    window_manager_pid=
    case $1 in
    openbox) openbox >/dev/null 2>&1 & ;;
    # It keeps its settings with a service of its desktop, which the bus starts.
    xfwm4) HOME=$window_manager_home XDG_CONFIG_HOME=$window_manager_home NO_AT_BRIDGE=1 \
        dbus-run-session -- xfwm4 --compositor=off >/dev/null 2>&1 & ;;
    none) return ;;
    *) echo "No window manager is known as $1." >&2; return 1 ;;
    esac
    window_manager_pid=$!
    # It announces itself before it manages windows, and loses one that is shown in between; when it has carried out a
    # request it is ready.
    until [ "$(xdotool set_num_desktops 1 get_num_desktops 2>/dev/null)" = 1 ]; do
        kill -0 "$window_manager_pid" 2>/dev/null || { echo "$1 did not start." >&2; return 1; }
        sleep 0.05
    done
}

# The window manager ends with the display, and what it has started with it.
stop_display() {
    kill "$xvfb_pid" 2>/dev/null || true
    # shellcheck disable=SC2086 # there may be no window manager
    wait "$xvfb_pid" $window_manager_pid 2>/dev/null || true
    rm -rf "$window_manager_home"
}

# take_screenshot FILE: waits for the editor's window to show a document, then writes the whole screen as a PNG.
take_screenshot() {
    until xdotool search --onlyvisible --name '^Marlo!Pad QT  \[' >/dev/null 2>&1; do
        kill -0 "$editor_pid" 2>/dev/null || { echo "The editor did not start." >&2; return 1; }
        sleep 0.1
    done
    sleep 0.5
    import -window root "$1"
}
