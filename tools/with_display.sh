#!/usr/bin/env bash
# Runs a command on a virtual display of its own: tools/with_display.sh COMMAND [ARGUMENT...]
# The X server picks a free display number and reports it once it answers, so that any number of
# these can run at the same time and nobody waits longer than needed. It ends with the command; the
# exit code is the command's, or 125 where no display could be started.
set -euo pipefail

if [[ $# -lt 1 ]]; then
    echo "Usage: $0 COMMAND [ARGUMENT...]" >&2
    exit 2
fi
if ! command -v Xvfb >/dev/null; then
    echo "Xvfb is not installed; tools/install_packages.sh installs it." >&2
    exit 125
fi

server=
server_log=$(mktemp)
# shellcheck disable=SC2317
clean_up() {
    if [[ -n $server ]]; then
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true
    fi
    rm -f "$server_log"
}
trap clean_up EXIT

# Should this script be killed without a chance to clean up, the kernel ends the server.
guard=()
if command -v setpriv >/dev/null; then
    guard=(setpriv --pdeathsig TERM --)
fi

# -dpi: fonts get the same size on every machine. -noreset: the display outlives a first program
# that leaves before a second one comes.
number=
for _ in 1 2 3; do
    exec {answer}< <(exec "${guard[@]}" Xvfb -displayfd 3 -screen 0 1280x1024x24 -dpi 96 \
        -nolisten tcp -noreset 3>&1 >"$server_log" 2>&1 </dev/null)
    server=$!
    if read -r -t 60 -u "$answer" number && [[ -n $number ]]; then
        break
    fi
    # Two servers that start at the same moment can pick the same number; the one that loses ends
    # and its next try finds another.
    number=
    kill "$server" 2>/dev/null || true
    wait "$server" 2>/dev/null || true
    server=
    exec {answer}<&-
done
if [[ -z $number ]]; then
    echo "No virtual display could be started:" >&2
    cat "$server_log" >&2
    exit 125
fi
exec {answer}<&-

export DISPLAY=:$number QT_QPA_PLATFORM=xcb LIBGL_ALWAYS_SOFTWARE=1
unset WAYLAND_DISPLAY XAUTHORITY

# The command runs beside this shell, so that a request to end reaches both without delay. A shell
# lets its background commands ignore SIGINT, which the inner one takes back.
(
    trap - EXIT INT QUIT
    exec "$@"
) <&0 &
command=$!
trap 'kill -TERM "$command" 2>/dev/null || true' TERM HUP
trap 'kill -INT "$command" 2>/dev/null || true' INT

# A wait that a signal cuts short says nothing of the command yet.
status=0
wait "$command" || status=$?
while kill -0 "$command" 2>/dev/null; do
    status=0
    wait "$command" || status=$?
done
exit "$status"
