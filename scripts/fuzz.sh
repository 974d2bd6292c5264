#!/usr/bin/env bash
# Builds the libFuzzer targets in build-fuzz (clang++, AddressSanitizer, UBSan) and runs each one
# after the other for a while, at low priority.
# Usage: scripts/fuzz.sh [seconds-per-target] [target...]   (default 60 s, all targets)
#        scripts/fuzz.sh --smoke [target...]                 (about 30 s for all targets together)
# Seeds come from fuzz/corpus/<target>/; what the fuzzer learns is kept in build-fuzz/corpus/.
# Failing inputs are kept in fuzz/crashes/<target>/ (not in git). Exits 1 when a target failed.
set -uo pipefail
cd "$(dirname "$0")/.."

seconds=60
smoke=0
if [ "${1:-}" = "--smoke" ]; then
    smoke=1
    shift
elif [[ "${1:-}" =~ ^[0-9]+$ ]]; then
    seconds=$1
    shift
fi

all_targets=(ukisettings ukisettingsjson ukpssettings archivedata ctcorrections locators
             customchannels searchstatistics cannedreply programsettings csvfiles)
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=("${all_targets[@]}")
if [ $smoke -eq 1 ]; then
    seconds=$(( 30 / ${#targets[@]} ))
    [ "$seconds" -ge 1 ] || seconds=1
fi

build=build-fuzz
cxx=${CXX_FUZZ:-clang++}
command -v "$cxx" >/dev/null || { echo "fuzz.sh: $cxx not found (packages clang, libclang-rt-14-dev)"; exit 2; }
if [ ! -f "$build/CMakeCache.txt" ]; then
    cmake -S . -B "$build" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=Check \
        -DKIRANTO_BUILD_FUZZ=ON -DKIRANTO_SANITIZE=ON -DKIRANTO_WERROR=ON \
        -DKIRANTO_BUILD_TESTS=OFF -DKIRANTO_BUILD_BENCH=OFF >/dev/null || exit 2
fi
nice cmake --build "$build" -j"$(nproc)" --target fuzz_all >"$build/fuzz-build.log" 2>&1 || {
    tail -n 40 "$build/fuzz-build.log"
    echo "fuzz.sh: build failed"
    exit 2
}

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

failed=0
mkdir -p "$build/fuzz-logs"
printf '%-18s %12s %8s  %s\n' target executions corpus result
for target in "${targets[@]}"; do
    binary="$build/fuzz/fuzz_$target"
    if [ ! -x "$binary" ]; then
        echo "fuzz.sh: no target $target"
        failed=1
        continue
    fi
    crashes="fuzz/crashes/$target"
    corpus="$build/corpus/$target"
    log="$build/fuzz-logs/$target.log"
    mkdir -p "$crashes" "$corpus"
    dict=()
    [ -f "fuzz/dict/$target.dict" ] && dict=(-dict="fuzz/dict/$target.dict")
    before=$(find "$crashes" -type f | wc -l)

    nice "$binary" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$crashes/" "${dict[@]}" \
        "$corpus" "fuzz/corpus/$target" >"$log" 2>&1
    status=$?

    after=$(find "$crashes" -type f | wc -l)
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
    units=$(find "$corpus" -type f | wc -l)
    if [ $status -eq 0 ] && [ "$after" -eq "$before" ]; then
        result="nothing found"
    else
        failed=1
        kind=$(grep -m1 -oE 'ERROR: [A-Za-z]+: [^ ]+|runtime error: .*|fuzz check failed: .*' "$log")
        result="FOUND: ${kind:-exit status $status}; $((after - before)) new input(s) in $crashes/"
    fi
    printf '%-18s %12s %8s  %s\n' "$target" "${executions:-?}" "$units" "$result"
    if [ "$result" != "nothing found" ]; then
        grep -E '^(SUMMARY|    #[0-9]+ )' "$log" | head -n 12 | sed 's/^/    /'
    fi
done
exit $failed
