# Sourced: a virtual X display with a window manager, for trying and testing the program where there is no screen.

# start_display GEOMETRY: sets DISPLAY; the display lives until stop_display.
start_display() {
    display_file=$(mktemp)
    Xvfb -displayfd 3 -screen 0 "$1" -noreset -nolisten tcp 3>"$display_file" 2>/dev/null &
    xvfb_pid=$!
    until [ -s "$display_file" ]; do
        kill -0 "$xvfb_pid" 2>/dev/null || { echo "The virtual display did not start." >&2; return 1; }
        sleep 0.05
    done
    DISPLAY=:$(cat "$display_file")
    export DISPLAY
    unset WAYLAND_DISPLAY
    rm -f "$display_file"
    openbox >/dev/null 2>&1 &
    openbox_pid=$!
    # It announces itself before it manages windows, and loses one that is shown in between; when it has carried out a
    # request it is ready.
    until [ "$(xdotool set_num_desktops 1 get_num_desktops 2>/dev/null)" = 1 ]; do sleep 0.05; done
}

stop_display() {
    kill "$openbox_pid" "$xvfb_pid" 2>/dev/null || true
    wait "$xvfb_pid" 2>/dev/null || true
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
