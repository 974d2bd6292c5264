#!/usr/bin/env bash
# Installs what is missing, then builds and tests these trees:
#   build       the normal build: the whole suite, the Debian package check among it
#   build-qt6   the normal build with Qt 6 instead of Qt 5.15: the whole suite
#   build-asan  AddressSanitizer + UndefinedBehaviorSanitizer + LeakSanitizer: the whole suite
#   build-tsan  ThreadSanitizer: serial link, engine and soak tests only (scripts/tsan.sh)
#   build-fuzz  libFuzzer: a short smoke run of every fuzz target (scripts/fuzz.sh --smoke)
# The normal tree is built first (quick feedback on compile errors) and tested last, so that its
# ctest summary closes the log. The ThreadSanitizer soak spends its time waiting on the
# simulator's line, so the fuzz and Qt 6 trees build beside it at the lowest priority. Every step
# runs even when an earlier one failed; the wall time of each is printed at the end, and the
# exit status is non-zero when any failed.
set -uo pipefail
cd "$(dirname "$0")/.."

jobs=$(nproc)
# Steps run in a background group too, so their table rows and failures go through files.
# The background group's output is shown after it, not mixed into the soak's.
rows=$(mktemp)
failed=$(mktemp)
beside=$(mktemp)
trap 'rm -f "$rows" "$failed" "$beside"' EXIT

# Sets CPU to the CPU seconds (user + system) used so far by the finished children of this
# shell. Must run in this shell, not in a $(...) subshell, whose counters start at zero.
cpu_now() {
    local file
    file=$(mktemp)
    times >"$file"
    CPU=$(tail -n 1 "$file" | awk '{ split($1, u, /[ms]/); split($2, s, /[ms]/);
                                     printf "%d\n", u[1] * 60 + u[2] + s[1] * 60 + s[2] }')
    rm -f "$file"
}

# timed LABEL COMMAND...: runs the command, records its wall and CPU time and its outcome.
timed() {
    local label=$1
    shift
    echo
    echo "======== $label"
    local start=$SECONDS cpu_start status=0
    cpu_now
    cpu_start=$CPU
    "$@" || status=$?
    cpu_now
    local took=$((SECONDS - start)) cpu=$((CPU - cpu_start)) outcome=ok
    [ $status -eq 0 ] || { outcome="FAILED (exit $status)"; echo "$label" >>"$failed"; }
    printf '%-42s %3d min %02d s wall, %5d s CPU   %s\n' "$label" $((took / 60)) \
        $((took % 60)) "$cpu" "$outcome" >>"$rows"
    echo "======== $label: $((took / 60)) min $((took % 60)) s wall, $cpu s CPU, $outcome"
    return 0
}

# run_ctest DIR [ctest arguments...]: the suite of one tree, its output kept in DIR/ctest.log.
run_ctest() {
    local dir=$1
    shift
    ctest --test-dir "$dir" --output-on-failure -j"$jobs" "$@" 2>&1 | tee "$dir/ctest.log"
    return "${PIPESTATUS[0]}"
}

# Tests whose suppressed leaks are only recognisable with the full (slow) unwinder.
slow_unwind='^(tst_fuzzregressions)$'

asan_ctest() {
    local status=0
    export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp"
    export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
    ASAN_OPTIONS=detect_leaks=1 run_ctest build-asan -E "$slow_unwind" || status=$?
    ASAN_OPTIONS=detect_leaks=1:fast_unwind_on_malloc=0 \
        ctest --test-dir build-asan --output-on-failure -R "$slow_unwind" 2>&1 \
        | tee -a build-asan/ctest.log
    [ "${PIPESTATUS[0]}" -eq 0 ] || status=1
    unset LSAN_OPTIONS UBSAN_OPTIONS
    return $status
}

normal_ctest() {
    QT_QPA_PLATFORM=offscreen run_ctest build
}

qt6_ctest() {
    QT_QPA_PLATFORM=offscreen run_ctest build-qt6
}

# The trees that build while the soak runs.
beside_the_soak() {
    timed "build-fuzz: build, fuzz smoke run" nice -n 19 scripts/fuzz.sh --smoke
    timed "build-qt6: configure, build" nice -n 19 scripts/setup.sh build-qt6 \
        -DKIRANTO_QT_MAJOR=6 -DKIRANTO_BUILD_BENCH=OFF -DKIRANTO_BUILD_FUZZ=OFF \
        -DCMAKE_BUILD_TYPE=Check
}

# The ctest summary line(s) of a tree, joined by "; ".
summary_of() {
    local lines
    lines=$(cat "$1"/ctest*.log 2>/dev/null | grep -E '^[0-9]+% tests passed' | paste -sd ';' - \
        | sed 's/;/; /g')
    echo "${lines:-(no ctest summary)}"
}

total_start=$SECONDS
timed "build: packages, configure, build" scripts/setup.sh build
timed "build-asan: configure, build" scripts/setup.sh build-asan -DKIRANTO_SANITIZE=ON \
    -DKIRANTO_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Check
timed "build-asan: ctest (ASan, LSan, UBSan)" asan_ctest
timed "build-tsan: build, ctest (link, engine)" scripts/tsan.sh tst_seriallink tst_uki
beside_the_soak >"$beside" 2>&1 &
timed "build-tsan: ctest (soak at 2,000)" scripts/tsan.sh tst_soak
wait
cat "$beside"
timed "build-qt6: ctest" qt6_ctest
timed "build: ctest" normal_ctest

total=$((SECONDS - total_start))
cpu_now
echo
echo "======== Times on $jobs core(s) (CPU = user + system of all processes)"
cat "$rows"
printf '%-42s %3d min %02d s wall, %5d s CPU\n' "total" $((total / 60)) $((total % 60)) \
    "$CPU"
echo
echo "build-tsan (ThreadSanitizer): $(summary_of build-tsan)"
echo "build-asan (ASan, LSan, UBSan): $(summary_of build-asan)"
echo "build-qt6 (Qt 6): $(summary_of build-qt6)"
if [ -s "$failed" ]; then
    sed 's/^/FAILED: /' "$failed"
fi
echo "build (normal): $(summary_of build)"
[ ! -s "$failed" ]
