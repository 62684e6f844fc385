#!/usr/bin/env bash
# Sets up, builds and runs every test: the rules of the house, the linters, the release build, the
# build with the address and undefined-behaviour sanitizers, the big-endian build and the stubs for
# aarch64 where there are the tools for it, and the demo. The last line counts them all; the exit status is 0 when none failed.
#
# Usage: scripts/test.sh
set -uo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname -- "${BASH_SOURCE[0]}")/setup.sh"
# No step may ask the user, even in a terminal.
exec </dev/null
export CI=true

passed=0 failed=0 skipped=0
failures=()

pass() { passed=$((passed + 1)); }
fail() {
    failed=$((failed + 1))
    failures+=("$1")
}

# check NAME COMMAND...: a command that is one test. With status 77 it says that it was skipped.
check() {
    local name=$1 status=0
    shift
    say "$name"
    "$@" || status=$?
    case $status in
    0) pass ;;
    77) skipped=$((skipped + 1)) ;;
    *) fail "$name" ;;
    esac
}

# count ATTRIBUTE REPORT: a number of the whole run in ctest's report.
count() { grep -o -m 1 "\\b$1=\"[0-9]*\"" "$2" | tr -dc 0-9; }

# Builds a preset and runs its tests.
test_preset() {
    local preset=$1 report=$root/build/$1-tests.xml status=0 all bad left_out
    if ! build "$preset"; then
        fail "build of the preset $preset"
        return
    fi
    say "Testing ($preset)"
    rm -f -- "$report"
    ctest --test-dir "$root/build/$preset" --output-on-failure --no-tests=error \
        -j "$(getconf _NPROCESSORS_ONLN)" --output-junit "$report" || status=$?
    if [ ! -s "$report" ]; then
        fail "ctest of the preset $preset"
        return
    fi
    all=$(count tests "$report")
    bad=$(count failures "$report")
    left_out=$(($(count skipped "$report") + $(count disabled "$report")))
    passed=$((passed + all - bad - left_out))
    failed=$((failed + bad))
    skipped=$((skipped + left_out))
    if [ "$bad" != 0 ]; then
        failures+=("$bad tests of the preset $preset, listed above and in build/$preset-tests.xml")
    elif [ "$status" != 0 ]; then
        fail "ctest of the preset $preset (status $status)"
    fi
}

# Test programs whole, each in one process: in order, and shuffled by five seeds, one after the other.
# Each leaves its log in the folder $1, and one that passes a file PROGRAM.passed.
run_whole() {
    local logs=$1 program name
    shift
    for program in "$@"; do
        name=$(basename "$program")
        { "$program" --gtest_brief=1 && "$program" --gtest_brief=1 --gtest_shuffle \
            --gtest_random_seed=1 --gtest_repeat=5; } >"$logs/$name.log" 2>&1 &&
            touch -- "$logs/$name.passed"
    done
}

# Each test program of a preset whole. ctest gives each test a process of its own, which hides what a
# test leaves behind. The longest, unit_base, mostly waits: it runs beside the others.
test_whole() {
    local program name longest=$root/build/$1/bin/unit_base others=() logs=$root/build/$1-whole
    for program in "$root/build/$1"/bin/unit_*; do
        [ "$program" = "$longest" ] || others+=("$program")
    done
    say "Whole: unit_base beside $(basename -a "${others[@]}" | tr '\n' ' ')"
    rm -rf -- "$logs"
    mkdir -p -- "$logs"
    run_whole "$logs" "$longest" &
    run_whole "$logs" "${others[@]}"
    wait
    for program in "$longest" "${others[@]}"; do
        name=$(basename "$program")
        if [ -e "$logs/$name.passed" ]; then
            pass
        else
            cat "$logs/$name.log"
            fail "$name whole, in one process"
        fi
    done
}

test_big_endian() {
    if has powerpc-linux-gnu-g++ && has qemu-ppc; then
        test_preset powerpc
    else
        say "No big-endian tests: g++-powerpc-linux-gnu or qemu-user is missing"
        skipped=$((skipped + 1))
    fi
}

# What the emulator cannot show: a launcher that starts another one (the system would have to know the
# emulator), limits on memory and borrowed rights (they meet the emulator), a session's end (the
# emulator keeps the signal), and tests whose stubs or roots hold nothing for the emulator.
not_emulated='Scan*:*HandOver*:*HandedOver*:Failures.WithoutMemory*:Failures.WithBorrowedRights*'
not_emulated+=':ActionResults.ASearchThatFailsUnexpectedly:Run.UnderNohup*:Cancel.TheSecondSignal*'
not_emulated+=':Find.JvmsThat*:*AskedOnce*:Explain.AJavaThatHangs'

end_to_end_on_aarch64() {
    local shard status=0 jobs=()
    for shard in 0 1; do
        CORVANE_TEST_STUBS=$root/build/aarch64/bin CORVANE_TEST_EMULATOR=$(command -v qemu-aarch64) \
            GTEST_TOTAL_SHARDS=2 GTEST_SHARD_INDEX=$shard \
            "$root/build/release/bin/e2e" --gtest_brief=1 --gtest_filter="-$not_emulated" &
        jobs+=($!)
    done
    for shard in "${jobs[@]}"; do
        wait "$shard" || status=1
    done
    return "$status"
}

test_aarch64() {
    if ! has aarch64-linux-gnu-g++ || ! has qemu-aarch64; then
        say "No tests on aarch64: g++-aarch64-linux-gnu or qemu-user is missing"
        skipped=$((skipped + 1))
    elif build aarch64 corvane-launcher corvane-launcher-any; then
        stubs_build=$root/build/aarch64
        check "End to end on aarch64" end_to_end_on_aarch64
    else
        fail "build of the preset aarch64"
    fi
}

demo_without_jvm() { ! "$root/scripts/demo.sh" --no-jvm; }

finish() {
    printf '\n'
    if [ "$failed" != 0 ]; then
        printf 'Failed: %s\n' "${failures[@]}"
    fi
    printf '%d passed, %d failed, %d skipped\n' "$passed" "$failed" "$skipped"
    [ "$failed" = 0 ] && [ "$passed" != 0 ]
}

use_utf8
set_up test
# The rules need no build, except the one about calls, which ctest runs.
for rule in "$root"/tools/check_*.py "$root"/tests/{calls,docs,rules}_test.py; do
    [ "${rule##*/}" != check_calls.py ] || continue
    check "Rule: $(basename "$rule" .py)" python3 -B "$rule" "$root"
done
for lint in format shell tidy; do
    check "Lint: $lint" "$root/scripts/lint.sh" "$lint"
done
test_preset release
test_whole release
test_preset asan
test_big_endian
stubs_build=
test_aarch64
check "The packages" "$root/tests/package/package_test.sh" "$root/build/release" "$stubs_build"
check "Torture, a choice of its cases" "$root/scripts/torture.sh" --short
check "The demo" "$root/scripts/demo.sh"
check "The demo once more" "$root/scripts/demo.sh"
check "The demo without a suitable Java" demo_without_jvm
finish
