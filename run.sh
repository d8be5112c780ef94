#!/usr/bin/env bash
# Builds Lithara, with all that it needs, and starts it: ./run.sh [ARGUMENT...]
# Where no display can be reached, the tour is played on a virtual one instead and leaves pictures
# of what the program shows.
# The program writes into its working directory, so that is a folder of the user's data and not the
# folder this is called from.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
"$root/tools/install_packages.sh"
"$root/tools/build.sh" release lithara lithara_tour

data=
if [[ -n ${XDG_DATA_HOME:-} ]]; then
    data=$XDG_DATA_HOME/lithara
elif [[ -n ${HOME:-} ]]; then
    data=$HOME/.local/share/lithara
fi
if [[ -z $data ]] || ! mkdir -p "$data" 2>/dev/null || [[ ! -w $data ]]; then
    unwritable=${data:-A home folder}
    data=$(mktemp -d -t lithara.XXXXXX)
    echo "$unwritable cannot be written to; using $data"
fi

# A set DISPLAY can be left over from a session that is gone, so the server is asked. setxkbmap
# comes with what Xvfb depends on; only its failure to connect counts, as a server without keyboard
# maps is fine, and so is a system without setxkbmap.
display_answers() {
    local complaint
    if [[ -n ${DISPLAY:-} ]]; then
        complaint=$(LC_ALL=C timeout 10 setxkbmap -query 2>&1 >/dev/null) && return 0
        if [[ $? -ne 124 && $complaint != *"annot open display"* ]]; then
            return 0
        fi
    fi
    # A Wayland session without X needs Qt's plugin for it, which is not one of our packages.
    if [[ -n ${WAYLAND_DISPLAY:-} ]]; then
        local socket=$WAYLAND_DISPLAY
        [[ $socket == /* ]] || socket=${XDG_RUNTIME_DIR:-}/$socket
        if [[ -S $socket ]] && compgen -G '/usr/lib/*/qt5/plugins/platforms/libqwayland-*.so' \
            >/dev/null; then
            return 0
        fi
    fi
    return 1
}

cd "$data"
if display_answers; then
    exec "$root/build/release/src/lithara" "$@"
fi

pictures=$data/tour
echo "No display can be reached, so the window cannot be shown here."
echo "Playing the tour on a virtual display instead; this takes a moment."
mkdir -p "$pictures"
status=0
"$root/tools/with_display.sh" "$root/build/release/examples/tour/lithara_tour" "$pictures" ||
    status=$?
if [[ $status -ne 0 ]]; then
    echo "The tour ended early, with code $status. What it left is in $pictures" >&2
    exit "$status"
fi
echo "The pictures of the tour are in $pictures"
