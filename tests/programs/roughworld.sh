#!/usr/bin/env bash
# Programs in a rough world: outputs that are inputs, full disks, closed descriptors, signals, files that change.
# usage: roughworld.sh DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES
set -u
readonly bin=$1 examples=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
# The table of an instance stays allocated on purpose.
export ASAN_OPTIONS=detect_leaks=0

# Bounded: a program that hangs is a fault too.
kirosim() { timeout 60 "$bin/kirosim" "$@"; }
kirotune() { timeout 60 "$bin/kirotune" "$@"; }

fail() {
    echo "$1"
    cat "$work/stdout" "$work/stderr"
    failures=$((failures + 1))
}

# Ends with that status and one line on stderr that matches the pattern.
ends() {
    local expected=$1 pattern=$2 status=0
    shift 2
    "$@" >"$work/stdout" 2>"$work/stderr" || status=$?
    [ $status -eq "$expected" ] && [ "$(wc -l <"$work/stderr")" -eq 1 ] && grep -Eq "$pattern" "$work/stderr" ||
        fail "status $status, expected $expected and '$pattern': $*"
}

# Waits until the run in the background has shown its first frame.
wait_for_a_frame() { until grep -q '^ *1 ' table || ! kill -0 $! 2>/dev/null; do sleep 0.02; done; }

cd "$work" || exit 1
cp "$examples/tunings/minimal.yaml" t.yaml
cp "$examples/scenes/tunnel.yaml" s.yaml
kirotune compile t.yaml -o t.bin || exit 1
readonly run=(kirosim run --no-live --quiet --scene s.yaml --frames 3)
ln -s t.yaml link.yaml
ln t.yaml hard.yaml
mkfifo pipe
mkdir folder
before=$(cat t.yaml s.yaml t.bin | cksum)

# Command, then what it says. An output must not be an input, nor another output; what is no file is named.
while IFS='|' read -r command pattern; do
    # shellcheck disable=SC2086
    ends 1 "$pattern" $command
    [ "$(cat t.yaml s.yaml t.bin | cksum)" = "$before" ] || fail "an input was destroyed: $command"
done <<TABLE
kirotune compile t.yaml -o t.yaml|t.yaml: both input and output
kirotune compile t.yaml -o folder/../t.yaml|both input and output
kirotune compile t.yaml -o link.yaml|both input and output
kirotune compile t.yaml -o hard.yaml|both input and output
kirotune dump t.bin -o t.bin|both input and output
kirotune compile t.yaml -o folder|folder: is a folder, expected a file
kirotune compile t.yaml -o pipe|pipe: is a pipe, expected a file
kirotune compile pipe -o x.bin|pipe: is a pipe, expected a file
kirotune check folder|folder: is a folder, expected a file
${run[*]} --tuning t.yaml --csv t.yaml|t.yaml: both --tuning and --csv
${run[*]} --tuning t.yaml --csv s.yaml|s.yaml: both --scene and --csv
${run[*]} --tuning t.yaml --record ./t.yaml|both --tuning and --record
${run[*]} --tuning t.yaml --csv new --record new|new: both --csv and --record
${run[*]} --tuning t.yaml --csv new --debug-data folder/../new|both --csv and --debug-data
TABLE
ends 2 'expected the name of a file' "${run[@]}" --tuning t.yaml --csv ''
ends 2 'expected the name of a file' kirotune compile t.yaml -o ''

# A mode that the tuning does not have is said once, and is an error of a strict run.
sed 's/^events: .*/events: [{time: 0, modes: [Usecase.Video]}, {time: 0.1, modes: [Usecase.Video]}]/' s.yaml >modes.yaml
readonly modes=(kirosim run --no-live --quiet --frames 9 --tuning t.bin --scene modes.yaml)
ends 0 '^kirosim: modes.yaml: the tuning has no mode Usecase.Video, for which the scene asks: the mode above' "${modes[@]}"
ends 1 '^kirosim: modes.yaml: the tuning has no mode Usecase.Video, for which the scene asks$' "${modes[@]}" --strict

# A good recording stays when another output cannot be opened, or the run does not come to its end.
"${run[@]}" --tuning t.bin --record run.rec >/dev/null || fail 'no recording'
kept=$(cksum <run.rec)
ends 1 'nowhere/out.csv: cannot be written' "${run[@]}" --tuning t.bin --record run.rec --csv nowhere/out.csv
[ "$(cksum <run.rec)" = "$kept" ] || fail 'a recording was destroyed'

# A limit of file sizes stands for a full disk: what was there stays, nothing is left beside it.
echo old >small.bin
ends 1 'small.bin: cannot be written: File too large' bash -c "ulimit -f 8; exec '$bin/kirotune' compile t.yaml -o small.bin"
[ "$(cat small.bin)" = old ] || fail 'a file that could not be written whole was replaced'
ends 1 'stdout: cannot be written' bash -c "'$bin/kirotune' dump t.bin >/dev/full"
ends 1 'stdout: cannot be written' bash -c "'$bin/kirosim' variants --scene '$examples/scenes/natural.yaml' >/dev/full"
[ ! -x "$bin/kirobench" ] ||
    ends 1 'kirobench: stdout: cannot be written' bash -c "'$bin/kirobench' --live 1 >/dev/full"
ends 1 'the stack is limited to 100 KB' bash -c "ulimit -s 100; exec '$bin/kirotune' schema"

# A temporary file has a name that nobody has, also where the number of a process comes again, and goes.
mkdir tmp
# shellcheck disable=SC2016
ends 1 'nosuch.yaml: cannot be opened' env TMPDIR="$work/tmp" sh -c 'mkdir "$TMPDIR/kirosoak-$$.bin"; exec "$@"' \
    sh "$bin/kirosoak" --tuning t.yaml nosuch.yaml
[ "$(find tmp | wc -l)" -eq 2 ] || fail 'a temporary file was left'

# Mode and owner of a replaced file stay; a link is followed, also one to a file that is not there yet.
chmod 640 small.bin
[ "$(id -u)" -ne 0 ] || chown 1:2 small.bin
readonly attributes=$(stat -c '%a %u:%g' small.bin)
ln -s later.bin ahead.bin
kirotune compile t.yaml -o small.bin && [ "$(stat -c '%a %u:%g' small.bin)" = "$attributes" ] || fail 'mode or owner of a file changed'
kirotune compile t.yaml -o ahead.bin && [ -L ahead.bin ] && cmp -s later.bin t.bin || fail 'a link is not followed'

# Closed descriptors are no files; standard streams are read and written whatever they are.
"${run[@]}" --tuning t.bin --csv plain.csv >/dev/null || fail 'no trace'
"$bin/kirosim" run --no-live --frames 3 --scene s.yaml --tuning t.bin --csv closed.csv <&- >&- 2>&-
cmp -s plain.csv closed.csv || fail 'a table went into the trace'
kirotune compile t.yaml -o /dev/stdout >out.bin && cmp -s out.bin t.bin || fail 'a file on standard output is not written to'
kirotune compile t.yaml -o /dev/stdout | cmp -s - t.bin || fail 'a pipe on standard output is not written to'
"${run[@]}" --tuning /dev/stdin --csv piped.csv <t.bin >/dev/null && cmp -s plain.csv piped.csv || fail 'standard input is no tuning'
"${run[@]}" --tuning <(cat t.bin) --csv piped.csv >/dev/null && cmp -s plain.csv piped.csv || fail 'a pipe is no tuning'

# A tuning that is compiled anew under a running camera changes nothing for it, whichever modes it asks for later.
kirosim run --no-live --quiet --scene s.yaml --frames 40 --tuning t.bin --csv before.csv >/dev/null
cp t.bin swapped.bin
: >table
"$bin/kirosim" run --no-live --scene s.yaml --frames 40 --realtime --tuning swapped.bin --csv after.csv >table 2>&1 &
wait_for_a_frame
: >swapped.bin
wait $!
cmp -s before.csv after.csv || fail 'a running camera reads the file that was its tuning'

# Whatever ends a program, nothing is left beside its outputs. A closed terminal does not lose a looping run.
for signal in HUP INT QUIT TERM PIPE; do
    : >table
    # Not a job of this shell's: a background job does not see Ctrl-C.
    (trap - INT QUIT; exec "$bin/kirosim" run --no-live --scene s.yaml --loop --tuning t.bin --csv "$signal.csv" >table 2>/dev/null) &
    wait_for_a_frame
    kill -$signal $!
    wait $! 2>/dev/null
    [ $signal = QUIT ] || { [ "$(tail -c 1 $signal.csv | wc -l)" -eq 1 ] || fail "SIG$signal loses the trace"; }
done
echo old >loops.csv
: >table
"$bin/kirosim" run --no-live --scene s.yaml --loops 100000 --tuning t.bin --csv loops.csv >table 2>stderr &
wait_for_a_frame
kill -TERM $!
wait $! && fail 'an interrupted run of many rounds ends well'
[ "$(cat loops.csv stderr)" = "old
kirosim: interrupted" ] || fail 'an interrupted run of many rounds leaves a part of them'
left=$(find . -name '*.tmp')
[ -z "$left" ] || fail "left behind: $left"

# Long work shows how far it is on a terminal, and not one character of that in a pipe.
readonly long=("$bin/kirosim" run --no-live --quiet --scene s.yaml --frames 3000 --tuning t.bin)
script -qec "${long[*]} >/dev/null" /dev/null </dev/null | grep -aq '[0-9] of 3000' || fail 'nothing tells how far a run is'
"${long[@]}" 2>&1 >/dev/null | grep -q . && fail 'progress goes into a pipe'

# Learned flash data that were damaged are refused.
readonly flash=(kirosim run --no-live --quiet --tuning "$examples/tunings/phone.yaml" --scene "$examples/scenes/flash-calibration.yaml")
"${flash[@]}" --fic-save flash.fic >/dev/null || fail 'nothing learned'
printf '\377' | dd of=flash.fic bs=1 seek=10 conv=notrunc status=none
ends 1 'flash.fic: not what a run has learned of a flash, or damaged' "${flash[@]}" --fic-load flash.fic

# A few lines that come to more than any machine can hold, and a text that is too long, are refused at once.
{
    echo 'a0: &a0 {x: 1}'
    for ((i = 1; i <= 30; ++i)); do printf 'a%d: &a%d {<<: [*a%d, *a%d]}\n' $i $i $((i - 1)) $((i - 1)); done
    echo '<<: *a30'
} >merges.yaml
ends 1 'merges.yaml:[0-9]+:[0-9]+: aliases and merge keys make more than' kirotune compile merges.yaml -o x.bin
ends 1 'merges.yaml:[0-9]+:[0-9]+: aliases and merge keys make more than' kirosim run --no-live --tuning t.bin --scene merges.yaml
{ printf '['; yes 0, | head -n 5000000 | tr -d '\n'; } >list.yaml
ends 1 'list.yaml:1:1: more than 1000000 values in lists and lines' kirotune check list.yaml
head -c 100000000 /dev/zero | tr '\0' ',' >long.yaml
ends 1 'long.yaml: too large, expected at most 16777216 bytes' kirotune check long.yaml
exit $((failures > 0))
