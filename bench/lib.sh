# What the benchmarks on a display share: building, a scratch folder with icons and menus, rows for the observer.
# Source it after setting $targets, which it builds in build/bench, or $build, a folder that has been built already.
set -eu
cd "$(dirname "${BASH_SOURCE[0]}")/.."
if [ -z "${build:-}" ]; then
    build=build/bench
    mkdir -p "$build"
    tools/setup build run bench || echo "Some packages cannot be installed; their rows are left out."
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DORB_BENCH=ON -DORB_TESTS=OFF >"$build/configure.log"
    cmake --build "$build" --target orb-launcher "${targets[@]}" >"$build/build.log"
fi

work=$(mktemp -d)
cleanup() {
    [ -z "${server:-}" ] || kill "$server" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT
icons=$work/share/icons/hicolor/scalable/apps
mkdir -p "$icons"
printf '[Icon Theme]\nName=Hicolor\nDirectories=scalable/apps\n[scalable/apps]\nSize=48\nType=Scalable\nMinSize=8\nMaxSize=512\n' \
    >"$work/share/icons/hicolor/index.theme"

svg() { # number: a picture of its own with gradients and paths, as real icons have
    local hue=$(($1 * 47 % 360))
    cat <<END
<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 48 48"><defs><linearGradient id="g" x1="0" y1="0" x2="0" y2="1">
<stop offset="0" stop-color="hsl($hue,80%,75%)"/><stop offset="1" stop-color="hsl($hue,70%,40%)"/></linearGradient></defs>
<rect x="4" y="4" width="40" height="40" rx="8" fill="url(#g)" stroke="hsl($hue,60%,25%)" stroke-width="2"/>
<path d="M12 34 L24 $((10 + $1 % 9)) L36 34 Z" fill="white" fill-opacity="0.8"/><circle cx="$((12 + $1 % 20))" cy="16" r="4" fill="hsl($(((hue + 180) % 360)),90%,60%)"/>
</svg>
END
}
for i in $(seq 200); do svg "$i" >"$icons/bench-icon-$i.svg"; done

fill() { # folder, count, with icons of their own?
    mkdir -p "$1"
    for i in $(seq "$2"); do
        printf '[Desktop Entry]\nType=Application\nName=Program number %s\nIcon=%s\nExec=true\n' "$i" \
            "$([ -n "${3:-}" ] && echo "bench-icon-$(((i - 1) % 200 + 1))" || echo application-x-executable)" \
            >"$1/program-$i.desktop"
    done
}
# jgmenu looks for icons in the theme that its own configuration names.
mkdir -p "$work/jgmenu/config/jgmenu" "$work/jgmenu/cache"
printf 'icon_theme = hicolor\nicon_size = 32\n' >"$work/jgmenu/config/jgmenu/jgmenurc"

ours() { # profile, suffix of its cache folder, folder of the program: the environment and the program
    printf 'HOME=%s;XDG_DATA_HOME=%s;XDG_CONFIG_HOME=%s;XDG_CACHE_HOME=%s;XDG_DATA_DIRS=%s\t%s\t100,1000,0\n' "$work/$1" \
        "$work/$1/data" "$work/$1/config" "$work/$1/cache${2:-}" "$work/share:/usr/local/share:/usr/share" "${3:-$build}/orb-launcher"
}
jgmenu_environment="HOME=$work/jgmenu;XDG_CONFIG_HOME=$work/jgmenu/config;XDG_CACHE_HOME=$work/jgmenu/cache;XDG_DATA_DIRS=$work/share:/usr/local/share:/usr/share"
rows=$work/rows
row() { printf '%s\t%s\t' "$1" "$2" >>"$rows"; cat >>"$rows"; }
have() { command -v "$1" >/dev/null || { echo "$1 is not installed: its rows are left out."; return 1; }; }

start_display() {
    mkfifo "$work/display"
    Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp -noreset 3>"$work/display" >/dev/null 2>&1 &
    server=$!
    read -r number <"$work/display"
    export DISPLAY=:$number
}
