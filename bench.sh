#!/usr/bin/env bash
# Builds Lithara and runs its benchmarks: ./bench.sh [BENCHMARK ARGUMENT...]
# for instance ./bench.sh --benchmark_filter=BM_Isotropic --benchmark_out=before.json
# The benchmarks run as the tests do, on a virtual display (a cell volume needs an OpenGL context)
# and with a home of their own, so that the user's registries neither count nor change.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
"$root/tools/install_packages.sh"
"$root/tools/build.sh" release lithara_bench

# The working directory is a new one, so a file for the results is meant relative to the old one.
arguments=()
for argument in "$@"; do
    case $argument in
    --benchmark_out=/*) ;;
    --benchmark_out=?*) argument=--benchmark_out=$PWD/${argument#*=} ;;
    esac
    arguments+=("$argument")
done
exec "$root/tools/run_isolated.sh" --display "$root/build/release/isolated/bench" \
    "$root/build/release/benchmarks/lithara_bench" "${arguments[@]}"
