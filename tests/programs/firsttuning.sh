#!/usr/bin/env bash
# A person who has no tuning yet: answers questions, or gives options, and is told of answers that cannot be.
# usage: firsttuning.sh DIRECTORY_OF_PROGRAMS [LAUNCHER OF PROGRAMS...]
set -u
bin=$(readlink -f "$1")
readonly bin launcher=("${@:2}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

kirotune() { "${launcher[@]}" "$bin/kirotune" "$@"; }

fail() {
    echo "$1"
    cat stdout stderr
    failures=$((failures + 1))
}

# Whether kirotune new with these options ends with an error of one line that matches a pattern, and writes nothing.
refuses() {
    local pattern=$1
    shift
    kirotune new -o refused.yaml "$@" </dev/null >stdout 2>stderr && fail "kirotune new $* succeeds"
    [ "$(grep -c '' stderr)" -eq 1 ] && grep -Eq -- "$pattern" stderr || fail "kirotune new $*: expected one line with '$pattern'"
    [ -e refused.yaml ] && fail "kirotune new $* leaves a file"
}

# Without a terminal nothing is asked: what no option says has its default.
kirotune new -o options.yaml --mains 60 --metering spot --hdr </dev/null >stdout 2>stderr || fail 'options do not do'
kirotune check --strict options.yaml >stdout 2>stderr || fail 'a first tuning is not clean'

# The same by answers; an empty one takes the default, one that is none is asked for again.
printf '%s\n' '' '' '' '' '' 40 60 '' spot yes | kirotune new --ask -o answers.yaml >stdout 2>stderr || fail 'answers do not do'
grep -q 'not 40: expected one of 50, 60, off' stderr || fail 'nothing says which answers there are'
cmp -s options.yaml answers.yaml || fail 'answers and options make different tunings'

# Without a file it goes to stdout, the questions do not.
printf '60\nspot\n' | kirotune new --ask --gain-min 1 --gain-max 64 --line-time 10 --time-max 100 --fps 30 --top-gain 32 --hdr \
    >stdout 2>stderr || fail 'questions beside options do not do'
cmp -s options.yaml stdout || fail 'stdout is not the tuning'

refuses '^--fps is 200, expected 1 to 100, a frame lasting ten lines or more$' --line-time 1000 --fps 200
refuses '^--top-gain is 0.5, expected 1 to 64, the sensor.s gains$' --top-gain 0.5
kirotune new --ask -o refused.yaml </dev/null >stdout 2>stderr && fail 'no answers do'
[ "$(tail -n 1 stderr)" = "the input ends before the answer to 'the sensor's lowest gain'" ] && [ ! -e refused.yaml ] ||
    fail 'nothing says that the input ends, or a file is left'
kirotune new -o options.yaml </dev/null >stdout 2>stderr && fail 'a file that is there is replaced'
grep -q '^options.yaml: is there already, expected a new file, or --force to replace it$' stderr || fail 'nothing says that the file is there'
cmp -s options.yaml answers.yaml || fail 'a refusal changes the file'
kirotune new -o options.yaml --force </dev/null >stdout 2>stderr || fail '--force does not replace the file'
[ $failures -eq 0 ]
