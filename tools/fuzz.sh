#!/usr/bin/env bash
# Feeds Lithara's readers with damaged files until the time is up or a reader fails:
#   tools/fuzz.sh [SECONDS] [READER...]
# Each reader gets that many seconds, 600 unless told. The readers are materials, processes, document
# and process-list; all of them are run unless some are named.
#
# As many readers run at the same time as there are cores, LITHARA_FUZZ_JOBS sets another number.
# Each has a home of its own. The inputs start from tests/Fuzz/corpus; what they grow to is kept in
# build/fuzz/corpus for the next run, logs are in build/fuzz/logs. The first input on which a reader
# fails is left in build/fuzz/crashes, and this script fails. To see it fail again, with the whole path
# of that file:
#   tools/run_isolated.sh build/fuzz/isolated/again build/fuzz/tests/Fuzz/lithara_READER_fuzz FILE
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
tree=$root/build/fuzz
all=(materials processes document process-list)

seconds=600
if [[ ${1:-} =~ ^[0-9]+$ ]]; then
    seconds=$1
    shift
fi
readers=("$@")
if [[ $# -eq 0 ]]; then
    readers=("${all[@]}")
fi
for reader in "${readers[@]}"; do
    if [[ " ${all[*]} " != *" $reader "* ]]; then
        echo "Usage: $0 [SECONDS] [READER...], with the readers ${all[*]}" >&2
        exit 2
    fi
done
# The fuzzer takes 0 seconds for no limit.
if [[ $seconds -eq 0 ]]; then
    echo "A run takes at least a second." >&2
    exit 2
fi
jobs=${LITHARA_FUZZ_JOBS:-$(nproc)}
if [[ ! $jobs =~ ^[1-9][0-9]*$ ]]; then
    echo "LITHARA_FUZZ_JOBS must be a number of readers, not '$jobs'" >&2
    exit 2
fi

"$root/tools/install_packages.sh"
targets=("${readers[@]/#/lithara_}")
targets=("${targets[@]/%/_fuzz}")
"$root/tools/build.sh" fuzz "${targets[@]}"
mkdir -p "$tree/crashes" "$tree/logs"

# The limits: a document of 4096 bytes may ask for 2^20 cells, which take some hundred megabytes with
# what the sanitizer keeps of freed memory, and up to five seconds of a core. The timeout counts real
# time, and leaves room for a machine that is busy with other things.
fuzz() {
    local reader=$1
    mkdir -p "$tree/corpus/$reader"
    exec "$root/tools/run_isolated.sh" "$tree/isolated/$reader" \
        "$tree/tests/Fuzz/lithara_${reader}_fuzz" \
        -max_total_time="$seconds" -max_len=4096 -timeout=60 \
        -rss_limit_mb=2048 -malloc_limit_mb=256 \
        -dict="$root/tests/Fuzz/xml.dict" -artifact_prefix="$tree/crashes/$reader-" \
        -print_final_stats=1 \
        "$tree/corpus/$reader" "$root/tests/Fuzz/corpus/$reader" \
        >"$tree/logs/$reader.log" 2>&1
}

declare -A running=()
# shellcheck disable=SC2317
end_all() {
    if [[ ${#running[@]} -gt 0 ]]; then
        kill "${!running[@]}" 2>/dev/null || true
    fi
}
trap end_all EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

failed=()
finish_one() {
    local pid status=0 reader log
    wait -n -p pid "${!running[@]}" || status=$?
    reader=${running[$pid]}
    log=$tree/logs/$reader.log
    unset "running[$pid]"
    if [[ $status -ne 0 ]]; then
        failed+=("$reader")
        echo "$reader: failed with code $status, see $log" >&2
        tail -n 60 "$log" >&2
        return
    fi
    echo "$reader: $(sed -n 's/^Done \(.*\)$/\1/p' "$log")," \
        "$(grep -o 'cov: [0-9]* ft: [0-9]* corp: [^ ]*' "$log" | tail -n 1)"
}

for reader in "${readers[@]}"; do
    while [[ ${#running[@]} -ge $jobs ]]; do
        finish_one
    done
    fuzz "$reader" &
    running[$!]=$reader
done
while [[ ${#running[@]} -gt 0 ]]; do
    finish_one
done

if [[ ${#failed[@]} -gt 0 ]]; then
    echo "Failed: ${failed[*]}. The inputs are in $tree/crashes" >&2
    exit 1
fi
