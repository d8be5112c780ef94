#!/usr/bin/env bash
# Checks that every tracked C++ file is formatted as .clang-format says: tools/check_format.sh
# With --fix the files are rewritten instead. Other versions of clang-format than 14 may disagree
# with it in places; 14 is what CI uses.
set -euo pipefail

mode=(--dry-run -Werror)
case ${1:-} in
'') ;;
--fix) mode=(-i) ;;
*)
    echo "Usage: $0 [--fix]" >&2
    exit 2
    ;;
esac

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"
formatter=clang-format
if command -v clang-format-14 >/dev/null; then
    formatter=clang-format-14
fi
if ! command -v git >/dev/null || ! command -v "$formatter" >/dev/null; then
    echo "git and clang-format are needed for this check." >&2
    exit 2
fi

# safe.directory: in a container the checkout may belong to another user.
mapfile -d '' -t tracked < <(git -c safe.directory="$root" ls-files -z -- '*.h' '*.cpp')
files=()
for file in "${tracked[@]}"; do
    # A file that was just deleted is tracked until the next commit.
    if [[ -f $file ]]; then
        files+=("$file")
    fi
done
if [[ ${#files[@]} -eq 0 ]]; then
    echo "git tracks no C++ files below $root." >&2
    exit 2
fi
printf '%s\0' "${files[@]}" | xargs -0 -n 16 -P "$(nproc)" "$formatter" --style=file "${mode[@]}"
