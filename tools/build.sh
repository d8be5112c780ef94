#!/usr/bin/env bash
# Configures where needed and builds: tools/build.sh PRESET [TARGET...]
# The presets are those of CMakePresets.json (release, debug, asan, tsan, fuzz), the result is in build/PRESET;
# without a target everything is built. run.sh, test.sh, bench.sh and CI all build through here.
#
# LITHARA_WERROR=1 makes warnings errors, 0 lets them be warnings again; when it is not set, a tree
# that exists stays as it was configured.
# CMAKE_BUILD_PARALLEL_LEVEL limits the number of compilers, otherwise there is one a core.
set -euo pipefail

if [[ $# -lt 1 ]]; then
    echo "Usage: $0 PRESET [TARGET...]" >&2
    exit 2
fi
preset=$1
shift

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"
tree=build/$preset
cache=$tree/CMakeCache.txt

cached() {
    sed -n "s/^$1:[^=]*=//p" "$cache"
}

configure=()
case ${LITHARA_WERROR:-} in
1) werror=ON ;;
0) werror=OFF ;;
'') werror= ;;
*)
    echo "LITHARA_WERROR must be 0 or 1, not '$LITHARA_WERROR'" >&2
    exit 2
    ;;
esac

# Ninja calls CMake again by itself when a CMakeLists.txt has changed, but it knows nothing of the
# presets, of another value of an option, or of a tree that was moved here from elsewhere.
needed=no
if [[ ! -f $cache || ! -f $tree/build.ninja || CMakePresets.json -nt $tree/build.ninja ]]; then
    needed=yes
fi
if [[ -f $cache && $(cached CMAKE_HOME_DIRECTORY) != "$root" ]]; then
    needed=yes
    configure+=(--fresh)
fi
if [[ -n $werror ]]; then
    configure+=("-DLITHARA_WERROR=$werror")
    if [[ -f $cache && $(cached LITHARA_WERROR) != "$werror" ]]; then
        needed=yes
    fi
fi

if [[ $needed == yes ]]; then
    cmake --preset "$preset" "${configure[@]}"
    # CMake leaves build.ninja alone when nothing in it changes; it is what the presets' age is
    # compared with.
    touch "$tree/build.ninja"
fi

targets=()
if [[ $# -gt 0 ]]; then
    targets=(--target "$@")
fi
exec cmake --build "$tree" --parallel "${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}" "${targets[@]}"
