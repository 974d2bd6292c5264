#!/usr/bin/env bash
# ThreadSanitizer run of the code that crosses threads: builds build-tsan with -DKIRANTO_TSAN=ON,
# only the serial-link and engine tests, the soak and the simulator they talk to, and runs them
# (or only the tests named). Clean means no ThreadSanitizer report at all: TSAN_OPTIONS makes a
# report fail its test. Needs the packages of scripts/setup.sh.
# Usage: scripts/tsan.sh [tst_seriallink|tst_uki|tst_soak ...]
set -euo pipefail
cd "$(dirname "$0")/.."

build=build-tsan
tests=(tst_seriallink tst_uki tst_soak)
wanted=("$@")
[ ${#wanted[@]} -gt 0 ] || wanted=("${tests[@]}")

cmake -S . -B "$build" -DKIRANTO_TSAN=ON -DKIRANTO_WERROR=ON -DKIRANTO_BUILD_BENCH=OFF \
    -DCMAKE_BUILD_TYPE=Check >/dev/null
available=$(cmake --build "$build" --target help | sed -n 's/^\.\.\. //p')
targets=(kiranto-sim)
present=()
for test in "${tests[@]}"; do
    if grep -qx "$test" <<<"$available"; then
        targets+=("$test")
        present+=("$test")
    else
        echo "tsan.sh: no target $test in this tree, left out"
    fi
done
cmake --build "$build" -j"$(nproc)" --target "${targets[@]}"

# exitcode: a test that printed a report fails even when all its checks passed.
export TSAN_OPTIONS="suppressions=$PWD/scripts/tsan.supp ignore_noninstrumented_modules=1 exitcode=66 halt_on_error=0 second_deadlock_stack=1 history_size=4"
run=()
for test in "${wanted[@]}"; do
    printf '%s\n' "${present[@]}" | grep -qx "$test" && run+=("$test")
done
[ ${#run[@]} -gt 0 ] || { echo "tsan.sh: none of ${wanted[*]} in this tree"; exit 2; }
pattern="^($(IFS='|'; echo "${run[*]}"))\$"
log="$build/ctest-$(IFS=-; echo "${run[*]}").log"
# With more address-space randomisation than the runtime expects it cannot map its shadow
# memory; running without randomisation avoids that where the kernel allows it.
# The soak runs ten times its default length here; ctest passes its own environment on.
export KIRANTO_SOAK_PROGRAMS=2000
norandom=()
if setarch "$(uname -m)" -R true 2>/dev/null; then
    norandom=(setarch "$(uname -m)" -R)
fi
"${norandom[@]}" ctest --test-dir "$build" -R "$pattern" --output-on-failure -j"$(nproc)" \
    | tee "$log"
status=${PIPESTATUS[0]}
if grep -q 'WARNING: ThreadSanitizer' "$log"; then
    echo "tsan.sh: ThreadSanitizer reports above"
    status=1
fi
exit "$status"
