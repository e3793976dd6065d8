#!/usr/bin/env bash
# A camera that runs on ends at a signal as a run ends by itself; a run in batch leaves nothing behind.
# usage: runningcamera.sh DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES [LAUNCHER OF PROGRAMS...]
set -u
readonly bin=$1 examples=$2
readonly launcher=("${@:3}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
# The table of an instance stays allocated on purpose.
export ASAN_OPTIONS=detect_leaks=0

# Starts a run, sends a signal once a line of its output matches, and waits for its end.
stop_at() {
    local pattern=$1 signal=$2
    shift 2
    : >"$work/stdout"
    "${launcher[@]}" "$bin/kirosim" run --no-live --tuning "$examples/tunings/minimal.yaml" --csv "$work/out.csv" "$@" \
        >"$work/stdout" 2>"$work/stderr" &
    local run=$!
    until grep -Eq "$pattern" "$work/stdout" || ! kill -0 $run 2>/dev/null; do sleep 0.05; done
    kill "-$signal" $run
    wait $run
}

fail() {
    echo "$1"
    cat "$work/stdout" "$work/stderr"
    failures=$((failures + 1))
}

# Whatever the run, its files and summary hold together.
ends_well() {
    local what=$1
    shift
    stop_at "$@" || fail "$what ends with status $?"
    grep -q '^ripple of the safe exposure' "$work/stdout" || fail "$what: no summary"
    grep -q '^frame,' "$work/out.csv" && [ "$(tail -c 1 "$work/out.csv" | wc -l)" -eq 1 ] || fail "$what: no whole trace"
    rm -f "$work/out.csv"
}

readonly scene=$examples/scenes/step-loop.yaml
ends_well 'a paced run' '^ +9 ' INT --scene "$scene" --realtime
ends_well 'a looping run' '^round 2: step ' TERM --scene "$scene" --loop --frames 90 --quiet

stop_at '^ +1 ' INT --scene "$scene" --frames 4000000000
[ $? -eq 1 ] && [ "$(cat "$work/stderr")" = 'kirosim: interrupted' ] || fail 'a run in batch does not say that it was interrupted'
[ -z "$(find "$work" -name 'out.csv*')" ] || fail 'a run in batch leaves a part of its trace'
exit $((failures > 0))
