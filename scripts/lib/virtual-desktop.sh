# shellcheck shell=bash
# A desktop without a monitor: an X server of its own with as many outputs as asked for, a session bus
# and home folders. Sourced after common.sh.
#
#   start_virtual_desktop OUTPUTS   comes back when the desktop is up; sets DISPLAY, HOME, XDG_* and
#                                   DBUS_* for what is started from now on
#   stop_virtual_desktop            ends it and removes its folders; also done when the script ends
#
# VIRTUAL_DESKTOP is the folder that holds all of it.

VIRTUAL_DESKTOP=
virtual_desktop_processes=()

stop_virtual_desktop() {
    local process
    for process in ${virtual_desktop_processes[@]+"${virtual_desktop_processes[@]}"}; do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    virtual_desktop_processes=()
    if [ -n "$VIRTUAL_DESKTOP" ]; then
        rm -rf "$VIRTUAL_DESKTOP"
        VIRTUAL_DESKTOP=
    fi
}

# In the background; the kernel ends it where the script is killed and cannot do so itself.
start_with_desktop() {
    setpriv --pdeathsig KILL "$@" &
    virtual_desktop_processes+=($!)
}

virtual_x_configuration() {
    cat <<'CONFIGURATION'
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 256000
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "640x480"
        Virtual 5760 1080
    EndSubSection
EndSection
CONFIGURATION
}

start_virtual_x_server() {
    local outputs=$1 folder=$VIRTUAL_DESKTOP output
    virtual_x_configuration >"$folder/xorg.conf"
    # The server itself, not the wrapper in PATH: the wrapper asks for a console.
    start_with_desktop /usr/lib/xorg/Xorg -displayfd 3 -noreset -novtswitch -sharevts \
        -config "$folder/xorg.conf" -logfile "$folder/xorg.log" -nolisten tcp \
        3>"$folder/display" >"$folder/xorg.out" 2>&1
    if ! wait_until 20 test -s "$folder/display"; then
        tail -n 20 "$folder/xorg.log" "$folder/xorg.out" >&2 || true
        fail "the virtual X server did not come up"
    fi
    DISPLAY=:$(cat "$folder/display")
    export DISPLAY
    unset XAUTHORITY WAYLAND_DISPLAY
    for ((output = 1; output < outputs; ++output)); do
        quietly xrandr --addmode "DUMMY$output" 640x480
        quietly xrandr --output "DUMMY$output" --mode 640x480 \
            --pos "$((output % 8 * 640))x$((output / 8 * 480))"
    done
}

start_virtual_session_bus() {
    local folder=$VIRTUAL_DESKTOP
    cat >"$folder/bus.conf" <<CONFIGURATION
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path=$folder/bus</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*"/><allow receive_sender="*"/>
<allow own="*"/></policy></busconfig>
CONFIGURATION
    start_with_desktop dbus-daemon --nofork --nopidfile --nosyslog \
        --config-file="$folder/bus.conf" >"$folder/bus.out" 2>&1
    wait_until 20 test -S "$folder/bus" || fail "the session bus did not come up"
    export DBUS_SESSION_BUS_ADDRESS="unix:path=$folder/bus"
    export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$folder/no-system-bus"
}

start_virtual_desktop() {
    local name
    VIRTUAL_DESKTOP=$(mktemp -d)
    trap stop_virtual_desktop EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
    trap 'exit 129' HUP
    for name in home config cache data state runtime; do
        mkdir -m 700 "$VIRTUAL_DESKTOP/$name"
    done
    export HOME="$VIRTUAL_DESKTOP/home"
    export XDG_CONFIG_HOME="$VIRTUAL_DESKTOP/config" XDG_CACHE_HOME="$VIRTUAL_DESKTOP/cache"
    export XDG_DATA_HOME="$VIRTUAL_DESKTOP/data" XDG_STATE_HOME="$VIRTUAL_DESKTOP/state"
    export XDG_RUNTIME_DIR="$VIRTUAL_DESKTOP/runtime"
    # Of somebody who has used the program before: nothing opens by itself.
    mkdir "$XDG_CONFIG_HOME/noctra"
    printf '[General]\nhasShownFirstRunPopover=true\n' >"$XDG_CONFIG_HOME/noctra/noctra.conf"
    start_virtual_x_server "$1"
    start_virtual_session_bus
}
