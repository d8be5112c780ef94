#!/usr/bin/env bash
# Runs a command that finds nothing of its user and leaves nothing with him:
#   tools/run_isolated.sh [--display] FOLDER COMMAND [ARGUMENT...]
# Home, working directory and temporary files are new empty folders inside FOLDER; they are left
# there for a look afterwards and emptied by the next run. Locale and time zone are fixed. With
# --display the command gets a virtual display of its own, otherwise none at all.
# FOLDER has to be missing, empty, or left by an earlier run; anything else is refused rather than
# emptied.
set -euo pipefail

tools=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
runner=()
if [[ ${1:-} == --display ]]; then
    runner=("$tools/with_display.sh")
    shift
fi
if [[ $# -lt 2 || -z $1 ]]; then
    echo "Usage: $0 [--display] FOLDER COMMAND [ARGUMENT...]" >&2
    exit 2
fi
folder=$1
command=$2
shift 2

# Both are given as seen from the caller's working directory.
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
if [[ $command == */* && $command != /* ]]; then
    command=$PWD/$command
fi

mark=$folder/.isolated
if [[ ! -e $mark ]]; then
    if [[ -n $(ls -A "$folder") ]]; then
        echo "$folder holds files of something else; $0 will not empty it." >&2
        exit 2
    fi
    : >"$mark"
fi
# Tests take permissions away; a leftover of a killed one must not stop the next.
for part in home work tmp; do
    if ! rm -rf "${folder:?}/$part" 2>/dev/null; then
        chmod -R u+rwX "$folder/$part"
        rm -rf "${folder:?}/$part"
    fi
done
mkdir -p "$folder/home" "$folder/work" "$folder/tmp"
mkdir -m 700 "$folder/home/.runtime"

export HOME=$folder/home
export XDG_CONFIG_HOME=$HOME/.config
export XDG_CACHE_HOME=$HOME/.cache
export XDG_DATA_HOME=$HOME/.local/share
export XDG_RUNTIME_DIR=$HOME/.runtime
export TMPDIR=$folder/tmp
export LC_ALL=C.UTF-8
export TZ=UTC
unset LANG LANGUAGE

# What a desktop session sets would change fonts, style, sizes and log lines.
unset DISPLAY WAYLAND_DISPLAY XAUTHORITY XDG_CURRENT_DESKTOP XDG_SESSION_TYPE XDG_SESSION_DESKTOP \
    DESKTOP_SESSION KDE_FULL_SESSION SESSION_MANAGER QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME \
    QT_STYLE_OVERRIDE QT_SCALE_FACTOR QT_AUTO_SCREEN_SCALE_FACTOR QT_SCREEN_SCALE_FACTORS \
    QT_ENABLE_HIGHDPI_SCALING QT_FONT_DPI QT_LOGGING_RULES QT_LOGGING_CONF QT_MESSAGE_PATTERN
export DBUS_SESSION_BUS_ADDRESS=unix:path=/dev/null

# For builds with sanitizers; what the caller has set comes last and so wins.
export ASAN_OPTIONS=detect_stack_use_after_return=1:check_initialization_order=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}
export UBSAN_OPTIONS=print_stacktrace=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}
export LSAN_OPTIONS="suppressions='$tools/lsan.supp':print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
export TSAN_OPTIONS="suppressions='$tools/tsan.supp':ignore_noninstrumented_modules=1${TSAN_OPTIONS:+:$TSAN_OPTIONS}"

cd "$folder/work"
exec "${runner[@]}" "$command" "$@"
