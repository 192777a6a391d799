# What the on-screen tests share: a private display, a scratch home, waiting for conditions.
# Source it; the first argument of the test is the program.
set -u
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
program=$(readlink -f "$1")
work=$(mktemp -d)
failures=0
children=()

cleanup() {
    local status=$?
    for child in "${children[@]:-}"; do [ -z "$child" ] || kill "$child" 2>/dev/null; done
    wait 2>/dev/null
    rm -rf "$work"
    exit "$status"
}
trap cleanup EXIT

fail() {
    echo "FAILED: $*"
    import -window root "$root/build/logs/$(basename "$0").png" 2>/dev/null
    failures=$((failures + 1))
}

patience=15 # seconds
wait_for() { # what, command...: until the command succeeds
    local what=$1 deadline=$((SECONDS + patience))
    shift
    until "$@" >/dev/null 2>&1; do
        if [ "$SECONDS" -ge "$deadline" ]; then
            fail "$what"
            return 1
        fi
        read -r -t 0.05 <> <(:)
    done
}

start_display() { # [size]
    mkfifo "$work/display"
    Xvfb -displayfd 3 -screen 0 "${1:-1280x800}x24" -nolisten tcp -noreset 3>"$work/display" >/dev/null 2>&1 &
    children+=($!)
    read -r number <"$work/display"
    export DISPLAY=:$number
}

scratch_home() {
    export HOME=$work/home
    export XDG_DATA_HOME=$HOME/data XDG_CONFIG_HOME=$HOME/config XDG_CACHE_HOME=$HOME/cache XDG_RUNTIME_DIR=$HOME/run
    export XDG_CONFIG_DIRS=$HOME/system-config:/etc/xdg # root would write the machine's own hive
    unset DBUS_SESSION_BUS_ADDRESS XDG_CURRENT_DESKTOP
    folder=$XDG_DATA_HOME/OrbLauncher
    mkdir -p "$folder" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_RUNTIME_DIR"
}

start_window_manager() { # command...
    "$@" >/dev/null 2>&1 &
    children+=($!)
    wait_for "the window manager is there" sh -c 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 0x'
}

# A window manager announces itself before it has come up: it has when a window of ours, the test's $tool's, is in its list.
manages() {
    "$tool" client 700 400 >"$work/probe.log" &
    local probe=$! good=1
    for _ in $(seq 50); do
        xprop -root _NET_CLIENT_LIST | grep -q 0x && good=0 && break
    done
    kill "$probe" && wait "$probe"
    return "$good"
}

# Its levels; the invisible window that holds its keyboard focus has no name.
menu_windows() { xdotool search --onlyvisible --name '^Orb Launcher$'; }
menu_shown() { [ -n "$(menu_windows 2>/dev/null)" ]; }

# The levels from left to right, a line each: left, top, width and height on the screen, borders included.
levels() {
    local window
    for window in $(menu_windows 2>/dev/null); do
        (eval "$(xdotool getwindowgeometry --shell "$window" 2>/dev/null)" && echo "$X $Y $WIDTH $HEIGHT")
    done | sort -n
}
level() { levels | sed -n "$1p"; } # number, from 1
level_is() { [ "$(level "$1")" = "$2" ]; }
level_count() { [ "$(levels | wc -l)" = "$1" ]; }
picture() { import -window root -crop "$1" +repage rgb:- | md5sum; } # WxH+X+Y
picture_is() { [ "$(picture "$1")" = "$2" ]; }

gone() { ! kill -0 "$1" 2>/dev/null; }

start_menu() { # arguments...
    "$program" "$@" 2>"$work/stderr" &
    menu=$!
    children+=("$menu")
    wait_for "the menu shows" menu_shown
}

finish() {
    [ "$failures" = 0 ] && echo "all conditions held"
    exit "$failures"
}
