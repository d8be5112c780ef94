#!/usr/bin/env bash
# Builds Lithara and runs its tests, without a display and on all cores:
#   ./test.sh [PRESET] [CTEST ARGUMENT...]
# The preset is release unless another is named: ./test.sh asan -R model. or ./test.sh -L unit
# Each test gets a home, a working directory and, where it needs one, a display of its own. The exit
# code is ctest's.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
preset=release
if [[ $# -gt 0 && $1 != -* ]]; then
    preset=$1
    shift
fi

"$root/tools/install_packages.sh"
"$root/tools/build.sh" "$preset"
cd "$root"
exec ctest --preset "$preset" --output-on-failure --parallel "$(nproc)" "$@"
