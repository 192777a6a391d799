# What the tests of the X11 screen share: the stage (X server and window manager), programs with their logs, waiting.
# To be sourced with FOLDER-OF-PROGRAMS, the window manager and options of Xvfb as arguments.
set -u
bin=$1
manager=$2
server_options=("${@:3}")
work=$(mktemp -d)
failures=0
pids=()
export ORB_LAUNCHER_STRICT_X11=1 LC_ALL=C.UTF-8 XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache
unset DISPLAY WAYLAND_DISPLAY

for program in Xvfb xdotool ${manager%%-*}; do
    [ "$program" = none ] || command -v "$program" >/dev/null || { echo "skipped: $program is not installed"; exit 77; }
done

cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null; done
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT

# --- waiting for conditions, five seconds at most
until_true() {
    local deadline=$((SECONDS + 5))
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $deadline ] || return 1
        sleep 0.01
    done
}
says() { grep -q "^$2" "$work/$1"; }
count() { grep -c "^$2" "$work/$1"; }
gone() { ! kill -0 "$1" 2>/dev/null; }
pixel_is() { [ "$("$bin/screen_x11_tool" pixel "$1" "$2")" = "$3" ]; }
pixel_is_not() { ! pixel_is "$1" "$2" "$3"; }
fail() {
    failures=$((failures + 1))
    echo "FAILED [$manager] $case: $*"
    for log in "$work"/*.log; do echo "  --- ${log##*/}: $(tr '\n' ';' <"$log" | tail -c 600)"; done
}
expect() { until_true "$@" || fail "$*"; }
refuse() { ! "$@" || fail "not expected: $*"; }

# --- the stage
start_server() {
    Xvfb -displayfd 3 -screen 0 1280x800x24 -noreset -nolisten tcp "${server_options[@]}" 3>"$work/display" 2>/dev/null &
    pids+=($!)
    until_true test -s "$work/display" || { echo "Xvfb did not start"; exit 1; }
    export DISPLAY=:$(cat "$work/display")
}
start_manager() {
    mkdir -p "$work/config/openbox" "$work/config/i3"
    local follow=no
    [ "$manager" = openbox-sloppy ] && follow=yes
    cat >"$work/config/openbox/rc.xml" <<XML
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>$follow</followMouse><focusDelay>0</focusDelay></focus>
  <keyboard><keybind key="A-Tab"><action name="NextWindow"/></keybind></keyboard>
  <mouse><context name="Client"><mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/>
  </mousebind></context></mouse>
</openbox_config>
XML
    printf 'font pango:monospace 8\nfloating_modifier Mod4\nfor_window [class=".*"] floating enable\n' \
        >"$work/config/i3/config"
    case $manager in
    none) return ;;
    openbox*) openbox --sm-disable --config-file "$work/config/openbox/rc.xml" >"$work/wm" 2>&1 & ;;
    i3) i3 -c "$work/config/i3/config" >"$work/wm" 2>&1 & ;;
    esac
    pids+=($!)
    until_true "$bin/screen_x11_tool" manager || { echo "$manager did not start"; exit 1; }
}
# start NAME PROGRAM ARGUMENTS...: runs it with its output in NAME.log and its process in $NAME
started=()
start() {
    local name=$1
    shift
    started+=("$name")
    : >"$work/$name.log"
    "$@" >"$work/$name.log" 2>&1 &
    printf -v "$name" %s $!
    pids+=($!)
}
# Ends what has been started.
close_all() {
    for name in "${started[@]}"; do
        [ -n "${!name:-}" ] && kill "${!name}" 2>/dev/null && wait "${!name}" 2>/dev/null
        unset "$name"
        rm -f "$work/$name.log"
    done
    started=()
    xdotool mousemove 1270 790
}
