#!/bin/bash
# The X11 screen against a real X server and window manager: pictures, keys, clicks, and above all the keyboard focus.
#
# usage: screen_x11_test.sh FOLDER-OF-PROGRAMS none|openbox|openbox-sloppy|i3 [option of Xvfb...]
# Exit status 77: a program that the test needs is not installed.
. "$(dirname "$0")/screen_x11_lib.sh"

open_other() {
    start other "$bin/screen_x11_tool" client 700 400 "$@"
    expect says other.log mapped
    # Without a window manager nobody gives it the focus.
    [ "$manager" = none ] && xdotool windowfocus "$(sed -n 's/^mapped //p' "$work/other.log")"
    expect says other.log focus-in
}
open_menu() {
    start "$1" "$bin/screen_x11_menu" "$2" "$3" ${4:-}
    expect says "$1.log" "active 1"
    expect pixel_is $(($2 + 50)) $(($3 + 50)) 0xff0000
}
begin() {
    close_all
    case=$1
}
more_than() { [ "$(count "$1" "$2")" -gt "$3" ]; }
hears_a_key() { # NAME WHAT-IT-SAYS
    local before
    before=$(count "$1.log" "$2")
    xdotool key b
    until_true more_than "$1.log" "$2" "$before" || fail "$1 does not have the keyboard"
}
menu_has_keyboard() { hears_a_key "$1" "key 66"; }
other_has_keyboard() { hears_a_key other key; }
# Uses the menu for longer than it defends itself against a window manager that is still settling (focus_policy.cpp).
past_settling() {
    local start=${EPOCHREALTIME/./}
    while [ $((${EPOCHREALTIME/./} - start)) -lt 400000 ]; do menu_has_keyboard "$1"; done
}

start_server
start_manager

begin "a window comes up with its picture, frame included"
open_menu menu 100 100
expect pixel_is 100 100 0x646464
expect pixel_is 299 399 0x646464
expect pixel_is 101 101 0xff0000

begin "mouse and wheel arrive in client coordinates"
open_menu menu 100 100
xdotool mousemove 151 171 click 1 click 5
expect says menu.log "move 50"
expect says menu.log "press 50"
expect says menu.log "release 50"
expect says menu.log "wheel -120"

begin "keys arrive with virtual key and character"
open_menu menu 100 100
xdotool key a Return Down shift+a F10
expect says menu.log "key 65"
expect says menu.log "char 97"
expect says menu.log "key 13"
expect says menu.log "key 40"
expect says menu.log "char 65"

begin "keys typed after the start belong to the menu"
open_other
open_menu menu 100 100
menu_has_keyboard menu
refuse says other.log key

begin "a click on another window closes the menu and is not swallowed"
open_other
open_menu menu 100 100
xdotool mousemove 800 500 click 1
expect says menu.log closed
expect gone "$menu"
expect says other.log "press 1"
expect says other.log "release 1"
[ "$manager" = none ] || other_has_keyboard

begin "a click on the bare desktop closes the menu"
open_other
open_menu menu 100 100
xdotool mousemove 600 50 click 1
expect says menu.log closed
expect gone "$menu"

begin "Escape closes the menu and the keyboard goes back"
open_other
open_menu menu 100 100
xdotool key Escape
expect says menu.log closed
expect gone "$menu"
other_has_keyboard

begin "a new window that takes the focus closes the menu"
open_menu menu 100 100
menu_has_keyboard menu
past_settling menu
start newcomer "$bin/screen_x11_tool" client 700 400 focus
expect says menu.log closed

begin "another program's tooltip does not close it"
open_menu menu 100 100
start tip "$bin/screen_x11_tool" tooltip 500 100
expect says tip.log mapped
menu_has_keyboard menu
refuse says menu.log "active 0"

begin "no grab is held while it is open"
open_menu menu 100 100
expect "$bin/screen_x11_tool" grabs
menu_has_keyboard menu

begin "a second start takes over and the first one closes"
open_other
open_menu menu 100 100
open_menu second 400 100
expect says menu.log closed
expect gone "$menu"
menu_has_keyboard second
xdotool key Escape
expect gone "$second"
other_has_keyboard

begin "a menu that stays open is told, and can take the keyboard again"
open_menu menu 100 100 stay
xdotool mousemove 600 50 click 1
expect says menu.log "active 0"
xdotool mousemove 150 150 click 1
expect says menu.log "press 49"
menu_has_keyboard menu

begin "a killed menu leaves a keyboard that works"
open_other
open_menu menu 100 100
kill -9 "$menu"
wait "$menu" 2>/dev/null
xdotool mousemove 800 500
[ "$manager" = none ] || xdotool click 1
other_has_keyboard

begin "the release of a press that began elsewhere starts nothing"
xdotool mousemove 150 150 mousedown 1
open_menu menu 100 100
xdotool mouseup 1
menu_has_keyboard menu
refuse says menu.log release

if [ "$manager" = openbox-sloppy ] || [ "$manager" = i3 ]; then
    begin "focus that follows the mouse does not close it"
    open_other
    xdotool mousemove 150 150
    open_menu menu 100 100
    past_settling menu
    xdotool mousemove 800 500 mousemove 810 510
    menu_has_keyboard menu
    refuse says menu.log "active 0"
fi

if [ "$manager" = openbox ]; then
    begin "Alt+Tab closes it"
    open_other
    open_menu menu 100 100
    xdotool key alt+Tab
    expect says menu.log closed
fi

begin "a message box gets the keyboard, is seen, and gives it back"
open_other
open_menu menu 540 250
xdotool key m
expect says other.log focus-out
box=
until_true eval 'box=$(xdotool search --name "^caption$")' || fail "no box"
until_true eval '[ "$(xdotool getwindowfocus)" = "$box" ]' || fail "the box has no keyboard"
refuse says menu.log "closed"
eval "$(xdotool getwindowgeometry --shell "$box")" # sets X and Y
[ $X -gt 440 ] && [ $X -lt 740 ] && [ $Y -gt 250 ] && [ $Y -lt 550 ] || fail "the box is not where the menu is: $X $Y"
expect pixel_is_not $(((X > 540 ? X : 540) + 5)) $((Y + 5)) 0xff0000
xdotool key Return
expect says menu.log "box 1"
menu_has_keyboard menu
past_settling menu
xdotool key Escape
expect gone "$menu"
other_has_keyboard

if [ "$manager" = none ]; then
    # What the window manager had done to a box went back to it as requests, and where it adds frames the box crept.
    begin "a message box takes the place that it is given without asking for it"
    start shifting "$bin/screen_x11_tool" shifting
    expect says shifting.log managing
    open_menu menu 540 250
    xdotool key m
    until_true eval 'box=$(xdotool search --onlyvisible --name "^caption$")' || fail "no box"
    until_true eval '[ "$(xdotool getwindowfocus)" = "$box" ]' || fail "the box has no keyboard"
    xdotool key Return
    expect says shifting.log "unmapped $box"
    refuse says shifting.log "request $box"
    kill "$shifting"
fi

if command -v setxkbmap >/dev/null; then
    begin "keys are named by the layout, and by their place where it has no Latin letters"
    setxkbmap de
    open_menu menu 100 100
    xdotool key 29
    expect says menu.log "key 90" # Z where the US layout has Y
    setxkbmap fr
    xdotool key 24 10
    expect says menu.log "key 65" # A where the US layout has Q
    expect says menu.log "key 49" # the digit, which needs Shift there
    expect says menu.log "char 38" # ampersand
    setxkbmap ru
    xdotool key 39
    expect says menu.log "key 83"
    expect says menu.log "char 1099"
    setxkbmap us,ru
    xdotool key l # xdotool itself always types in the first layout
    expect says menu.log "second-layout-key 67"
    expect says menu.log "second-layout-char 1089"

    begin "AltGr, dead keys and the Compose key type what the layout says"
    setxkbmap de
    open_menu menu 100 100
    xdotool keydown 108 key 26 keyup 108
    expect says menu.log "char 8364" # the euro sign
    setxkbmap us intl -option compose:menu
    xdotool key 48 26
    expect says menu.log "char 233" # e with an acute accent
    refuse says menu.log "char 180" # the accent alone
    xdotool key 135 32 61
    expect says menu.log "char 248" # o with a stroke, from o and /
    setxkbmap us -option

    begin "Num Lock decides what the number pad is"
    open_menu menu 100 100
    xdotool key 83
    expect says menu.log "key 37"
    refuse says menu.log "char 52"
    xdotool key Num_Lock key 83 key Num_Lock
    expect says menu.log "key 100"
    expect says menu.log "char 52"
fi

if command -v xrandr >/dev/null && command -v xprop >/dev/null; then
    begin "monitors and resolution are the desktop's"
    xrandr --setmonitor left 640/200x800/200+0+0 screen >/dev/null
    xrandr --setmonitor right 640/200x700/200+640+0 none >/dev/null
    xprop -root -f RESOURCE_MANAGER 8s -set RESOURCE_MANAGER "Xft.dpi:	144"
    open_menu menu 100 100
    expect says menu.log "dpi 144"
    expect says menu.log "monitors 2"
    expect says menu.log "right-monitor-left 640"
    expect says menu.log "right-monitor-bottom 700"
    xrandr --delmonitor left
    xrandr --delmonitor right
    xprop -root -remove RESOURCE_MANAGER
fi

begin "losing the display ends the program with one line"
open_menu menu 100 100
kill -9 "${pids[0]}"
wait "$menu"
[ $? -eq 1 ] || fail "exit status is not 1"
[ "$(grep -c . "$work/menu.log")" = "$(grep -cE '^(active|delay|dpi|monitors|right-monitor-[a-z]+|move|key|char) |^orb-launcher: the display was lost$' "$work/menu.log")" ] &&
    says menu.log "orb-launcher: the display was lost" || fail "wrong message"

case="no display"
: >"$work/none.log"
DISPLAY=:9999 "$bin/screen_x11_menu" 1 1 2>"$work/none.log"
[ $? -eq 1 ] || fail "exit status is not 1"
[ "$(cat "$work/none.log")" = "orb-launcher: cannot open display :9999" ] || fail "wrong message"

echo "$failures failures with $manager"
[ $failures -eq 0 ]
