#!/usr/bin/env bash
# Runs a test of a build with sanitizers: tools/run_sanitized.sh COMMAND [ARGUMENT...]
#
# The search for leaks at a program's end can break down by itself, when a thread of a library comes or
# goes while it looks. It says so, and has then found out nothing, either way. Such a run is repeated,
# twice at most; whatever else goes wrong counts at once.
set -uo pipefail

output=$(mktemp)
trap 'rm -f "$output"' EXIT
for attempt in 1 2 3; do
    "$@" 2>&1 | tee "$output"
    status=${PIPESTATUS[0]}
    if [[ $status -eq 0 || $attempt -eq 3 ]] ||
        ! grep -q '^Tracer caught signal' "$output" ||
        ! grep -q 'LeakSanitizer has encountered a fatal error' "$output"; then
        exit "$status"
    fi
    echo "The search for leaks broke down; running once more."
done
