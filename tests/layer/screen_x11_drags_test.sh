#!/bin/bash
# Drags on a real X server, in both directions, with partners well-behaved and not. After each the program goes on, and
# mouse and keyboard are anybody's.
#
# usage: screen_x11_drags_test.sh FOLDER-OF-PROGRAMS none|openbox|i3 [option of Xvfb...]
# Exit status 77: a program that the test needs is not installed.
. "$(dirname "$0")/screen_x11_lib.sh"

begin() {
    close_all
    case=$1
    start ours "$bin/screen_x11_drags" 100 100
    expect says ours.log window
    expect pixel_is 150 150 0x0000ff
    window=$(sed -n 's/^window //p' "$work/ours.log")
}
says_all() { # LOG LINE...: these lines, in this order and no others between the first and the last
    local log=$1
    shift
    [ "$(printf '%s\n' "$@")" = "$(grep -vE '^(mapped|ready|window)' "$work/$log" | uniq)" ]
}
all_is_well() {
    kill -0 "$ours" 2>/dev/null || fail "the program has ended"
    expect "$bin/screen_x11_tool" grabs
    expect pixel_is 150 150 0x0000ff
}

start_server
start_manager

# --- what comes in. KIND, then what the partner hears.
drag_in() {
    local kind=$1
    shift
    begin "in: $kind"
    start partner "$bin/drag_partner" source "$window" 150 160 "$kind"
    expect says_all partner.log "$@"
    start good "$bin/drag_partner" source "$window" 150 160 good
    expect says_all good.log "status XdndActionCopy" "finished XdndActionCopy"
    all_is_well
}
taken=("status XdndActionCopy" "finished XdndActionCopy")
drag_in good "${taken[@]}"
expect says ours.log "over 150 160 targets 1 actions 1$"
expect says ours.log "dropped 44"
drag_in ask "${taken[@]}"
expect says ours.log "over 150 160 targets 1 actions 14$" # asks; move and link are listed
drag_in list "${taken[@]}"
expect says ours.log "over 150 160 targets 40"
drag_in old "status XdndActionCopy" "finished none"
drag_in newer "status none" "finished none"
drag_in many "${taken[@]}"
drag_in garbage "${taken[@]}"
expect says ours.log "dropped 1048576"
drag_in nothing "status none" "finished none"
drag_in hasty "${taken[@]}"
drag_in two-enters "${taken[@]}"
drag_in two-drops "${taken[@]}"
drag_in drop-only "finished none"
drag_in no-position "finished none"
drag_in silent "status XdndActionCopy" "finished none"
drag_in dies "status XdndActionCopy"
expect says ours.log leave
drag_in destroys "status XdndActionCopy" destroyed
expect says ours.log leave

# --- what goes out
over_partner() { # KIND [BUTTON]
    begin "out: $1"
    start partner "$bin/drag_partner" target 700 400 "$1"
    expect says partner.log mapped
    expect pixel_is 800 480 0x00ff00
    xdotool mousemove 150 150 mousedown "${2:-1}"
    expect says ours.log "begun 1"
    xdotool mousemove 200 200 mousemove 790 470 mousemove 800 480
}
drag_out() { # KIND WHAT-IS-DONE
    over_partner "$1"
    expect says partner.log "over .* XdndActionCopy of 1$" # the key for it leaves no choice
    expect says ours.log "place 1 $2"
    xdotool mouseup 1
    expect says ours.log "done $2"
    expect says ours.log ended
    expect says partner.log "given 22"
    refuse grep -q "without time" "$work/partner.log"
    all_is_well
}
drag_out good 1
drag_out move 2
drag_out link 4
drag_out old 1
expect says partner.log "enter 3"
drag_out once 1
drag_out proxy 1

drag_out_in_vain() { # KIND
    over_partner "$1"
    case $1 in
    plain | bad-proxy) expect says ours.log "own 0" ;;
    *) expect says partner.log over ;;
    esac
    case $1 in
    refuses) expect says ours.log "place 1 0" ;;
    no-finish) expect says ours.log "place 1 1" ;;
    dies | destroys) expect pixel_is_not 790 540 0x00ff00 ;;
    esac
    xdotool mouseup 1
    expect says ours.log ended
    refuse grep -qE "^done [1-9]" "$work/ours.log"
    all_is_well
}
for kind in refuses no-status no-finish dies destroys plain bad-proxy; do drag_out_in_vain $kind; done

over_partner good 3
case="out: the right button asks"
expect says partner.log "over 800 480 XdndActionAsk of 4$" # asking listed too, or file managers do not
xdotool mouseup 3
expect says ours.log "done 1"
all_is_well

over_partner good
case="out: the picture is under the pointer, and gone afterwards"
expect pixel_is 800 450 0xff0000
expect pixel_is 800 425 0x00ff00 # where the picture is clear
refuse "$bin/screen_x11_tool" grabs
xdotool mousemove 400 650
expect pixel_is 400 620 0xff0000
expect pixel_is_not 800 450 0xff0000
[ "$manager" = i3 ] || expect says partner.log leave # which i3 makes as large as the screen
xdotool key Escape
expect says ours.log ended
expect pixel_is_not 400 620 0xff0000
all_is_well
xdotool mouseup 1

over_partner good
case="out: Escape over a partner"
expect says ours.log "place 1 1"
xdotool key Escape
expect says partner.log leave
expect says ours.log ended
all_is_well
xdotool mouseup 1

over_partner good
case="out: killed in the middle"
expect says ours.log "place 1 1"
kill -9 "$ours"
wait "$ours" 2>/dev/null
expect "$bin/screen_x11_tool" grabs
expect pixel_is 800 450 0x00ff00
xdotool mouseup 1

if [ "$manager" = none ] && command -v xcompmgr >/dev/null; then
    xcompmgr >/dev/null 2>&1 &
    compositor=$!
    pids+=($compositor)
    over_partner good
    case="out: with a compositor"
    expect pixel_is 800 450 0xff0000
    expect pixel_is 800 425 0x00ff00
    xdotool mouseup 1
    expect says ours.log "done 1"
    expect pixel_is 800 450 0x00ff00
    kill "$compositor"
fi

echo "$failures failures with $manager"
[ $failures -eq 0 ]
