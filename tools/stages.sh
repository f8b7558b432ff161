# Stages with a time limit each, and the sum of what passed and failed in them. To be sourced from the root of the tree.
# shellcheck shell=sh

passed=0
failed=0
logs=build/logs
mkdir -p "$logs"

# Prints the sum and ends the script.
finish() {
    echo
    echo "$passed passed, $failed failed"
    [ "$failed" -eq 0 ]
    exit
}

log_of() {
    echo "$logs/$(echo "$1" | tr -c 'a-z0-9\n' '-').log"
}

# stage NAME SECONDS COMMAND...: a step that counts only when it fails.
stage() {
    stage_name=$1
    stage_limit=$2
    shift 2
    stage_log=$(log_of "$stage_name")
    stage_begin=$(date +%s)
    echo "== $stage_name"
    if with_limit "$stage_limit" "$@" >"$stage_log" 2>&1; then
        echo "   done in $(($(date +%s) - stage_begin)) s"
        return 0
    fi
    failed=$((failed + 1))
    tail -n 60 "$stage_log"
    echo "   FAILED: $stage_name (whole output in $stage_log)"
    return 1
}

# stage_check NAME SECONDS COMMAND...: a step that counts as one test.
stage_check() {
    stage "$@" && passed=$((passed + 1))
}

# stage_tests NAME SECONDS BUILD CTEST-ARGUMENT...: runs tests of a build and counts each but those that are skipped. These are named
# with their reasons, and the figures that tests have printed follow.
stage_tests() {
    stage_name=$1
    stage_limit=$2
    stage_build=$3
    shift 3
    stage_log=$(log_of "$stage_name")
    stage_begin=$(date +%s)
    echo "== $stage_name"
    # What each test has said; of an earlier run it would be taken for this one's.
    stage_said=$stage_build/Testing/Temporary/LastTest.log
    rm -f "$stage_said"
    with_limit "$stage_limit" ctest --test-dir "$stage_build" --output-on-failure -j 2 "$@" >"$stage_log" 2>&1
    stage_status=$?
    # "98% tests passed, 2 tests failed out of 100"
    stage_sum=$(sed -n 's/.*tests passed, \([0-9]*\) tests* failed out of \([0-9]*\)$/\1 \2/p' "$stage_log" | tail -n 1)
    if [ -z "$stage_sum" ]; then
        if [ "$stage_status" -eq 0 ] && grep -q 'No tests were found' "$stage_log"; then
            echo "   no tests"
            return 0
        fi
        failed=$((failed + 1))
        tail -n 60 "$stage_log"
        echo "   FAILED: $stage_name came to no end (whole output in $stage_log)"
        return 1
    fi
    stage_failed=${stage_sum% *}
    stage_total=${stage_sum#* }
    # ctest takes them for passed.
    stage_skipped=$(grep -c -E '^ *[0-9]+/[0-9]+ Test +#.*\*\*\*Skipped' "$stage_log")
    stage_passed=$((stage_total - stage_failed - stage_skipped))
    failed=$((failed + stage_failed))
    passed=$((passed + stage_passed))
    if [ "$stage_failed" -ne 0 ]; then
        grep -v -E '^ *[0-9]+/[0-9]+ Test +#.* Passed|^ +Start ' "$stage_log" | tail -n 200
    fi
    tools/what-tests-said "$stage_log" "$stage_said" | sed 's/^/   /'
    cp "$stage_said" "${stage_log%.log}-said.log"
    stage_words="$stage_passed passed, $stage_failed failed"
    [ "$stage_skipped" -eq 0 ] || stage_words="$stage_words, $stage_skipped skipped"
    echo "   $stage_words in $(($(date +%s) - stage_begin)) s"
    [ "$stage_failed" -eq 0 ]
}

# stage_script NAME SECONDS COMMAND...: a step with stages of its own, which prints what it does, and one sum of them or several.
stage_script() {
    stage_name=$1
    stage_limit=$2
    shift 2
    stage_log=$(log_of "$stage_name")
    stage_begin=$(date +%s)
    echo "== $stage_name"
    { with_limit "$stage_limit" "$@" 2>&1 || echo "ended with $?"; } | tee "$stage_log" | sed -u 's/^/   /'
    stage_passed=$(sed -n 's/^\([0-9]*\) passed, [0-9]* failed$/+ \1/p' "$stage_log" | tr '\n' ' ')
    stage_failed=$(sed -n 's/^[0-9]* passed, \([0-9]*\) failed$/+ \1/p' "$stage_log" | tr '\n' ' ')
    passed=$((passed $stage_passed))
    stage_failed=$((0 $stage_failed))
    failed=$((failed + stage_failed))
    # Where no test has failed, something else has.
    if grep -q '^ended with ' "$stage_log" && [ "$stage_failed" -eq 0 ]; then
        failed=$((failed + 1))
        echo "   FAILED: $stage_name (whole output in $stage_log)"
    fi
    echo "   done in $(($(date +%s) - stage_begin)) s"
    ! grep -q '^ended with ' "$stage_log"
}

# with_limit SECONDS COMMAND...: the command may be a function of this file.
with_limit() {
    limit_seconds=$1
    shift
    case $(command -v "$1") in
    "$1") timeout --kill-after=10 "$limit_seconds" sh -c '. tools/stages.sh; "$@"' sh "$@" ;;
    *) timeout --kill-after=10 "$limit_seconds" "$@" ;;
    esac
}

build_preset() {
    cmake --preset "$1" && cmake --build "build/$1"
}
