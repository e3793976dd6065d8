#!/usr/bin/env bash
# Bad input ends the programs with status 1 and one clear line, and leaves no output behind.
# usage: refusals.sh DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES [LAUNCHER OF PROGRAMS...]
set -u
readonly bin=$1 examples=$2
readonly launcher=("${@:3}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

kirosim() { "${launcher[@]}" "$bin/kirosim" "$@"; }
kirotune() { "${launcher[@]}" "$bin/kirotune" "$@"; }

# Runs a command that must be refused; the line on stderr must match the pattern. The status is 1, or as expected= says.
refuses() {
    local pattern=$1
    shift
    "$@" >"$work/stdout" 2>"$work/stderr"
    local status=$?
    if [ $status -ne "${expected:-1}" ] || [ "$(grep -c '' "$work/stderr")" -ne 1 ] || ! grep -Eq "$pattern" "$work/stderr"; then
        echo "status $status, expected ${expected:-1} and one line that matches '$pattern': $*"
        cat "$work/stderr"
        failures=$((failures + 1))
    fi
}

# Sets the bytes (octal) at an offset of the good file.
damage() { cp "$good" "$work/$1" && printf "$3" | dd of="$work/$1" bs=1 seek="$2" conv=notrunc status=none; }

readonly scene=$examples/scenes/tunnel.yaml
readonly good=$work/good.bin
kirotune compile "$examples/tunings/minimal.yaml" -o "$good" || exit 1

: >"$work/empty.bin"
head -c 3000 "$good" >"$work/truncated.bin"
damage flipped.bin 5000 '\377\377\377\377'
damage tag.bin 0 'X'
for file in missing empty truncated flipped tag; do
    refuses "^kirosim: .*$file.bin: ." kirosim run --no-live --tuning "$work/$file.bin" --scene "$scene" --csv "$work/out.csv"
    kirotune check "$work/$file.bin" >"$work/stdout" 2>&1
    [ $? -eq 1 ] || { echo "kirotune check accepts $file.bin"; failures=$((failures + 1)); }
done

# A text in place of a parameter file, and the other way round. Where both are welcome, a file's name does not matter.
cp "$good" "$work/named.yaml" && cp "$examples/tunings/minimal.yaml" "$work/named.bin"
refuses "named.yaml: is a parameter file, .*kirotune dump .*named.yaml -o OUT$" kirotune compile "$work/named.yaml" -o "$work/out.bin"
refuses "named.bin: is a text tuning, .*kirotune compile .*named.bin -o OUT$" kirotune dump "$work/named.bin"
for file in named.yaml named.bin; do
    kirotune check "$work/$file" || { echo "kirotune check refuses $file"; failures=$((failures + 1)); }
done

printf 'modes:\n  Default:\n    modules:\n      kiroconvergence: {noSuchMember: 1}\n' >"$work/tuning.yaml"
refuses "tuning.yaml:4:[0-9]+: .*noSuchMember" kirotune compile "$work/tuning.yaml" -o "$work/out.bin"
printf 'modes:\n  Default:\n    modules:\n      kiroconvergence: {unitStepSize: fast}\n' >"$work/patch.yaml"
refuses "patch.yaml:4:[0-9]+: 'fast' found for unitStepSize" \
    kirotune compile "$examples/tunings/minimal.yaml" --patch "$work/patch.yaml" -o "$work/out.bin"
refuses "tuning.yaml:4:[0-9]+: .*noSuchMember" kirotune page --file "$work/tuning.yaml"
refuses "^cannot listen at 192.0.2.1:8080: ." kirotune page --listen 192.0.2.1:8080
expected=2 refuses "^kirotune: --listen: expected HOST:PORT" kirotune page --listen 8080
readonly set_run=(kirosim run --no-live --tuning "$good" --scene "$scene" --csv "$work/out.csv")
for edit in 'unitStepSize=1:expected MODE' 'Sensr.0/kiroconvergence/unitStepSize=1:unknown mode' 'Default|Sensor.7/kiroconvergence/unitStepSize=1:no mode Default.Sensor.7' \
    'Default/kiroconvergence/unitStepSiz=1:no kiroconvergence.unitStepSiz in' 'Default/kiroconvergence/unitStepSize=fast:expected one number'; do
    refuses "^kirosim: --set .*: .*${edit##*:}" "${set_run[@]}" --set "${edit%:*}"
done
refuses '^kirosim: --record with --set: ' "${set_run[@]}" --set Default/kiroconvergence/unitStepSize=1 --record "$work/out.rec"
printf 'no blob' >"$work/flash.fic"
refuses "flash.fic: not what a run has learned of a flash" kirosim run --no-live --tuning "$good" \
    --scene "$examples/scenes/flash-calibration.yaml" --fic-load "$work/flash.fic"
printf 'name: bad\nlux: bright\n' >"$work/scene.yaml"
refuses "scene.yaml:2:[0-9]+: " kirosim run --no-live --tuning "$good" --scene "$work/scene.yaml" --csv "$work/out.csv"
printf 'frames: 0\n' >"$work/noframes.yaml"
refuses "noframes.yaml:1:[0-9]+: .0. found for frames, expected an integer from 1" kirosim run --no-live --tuning "$good" --scene "$work/noframes.yaml"
refuses "natural.yaml:2:1: there is no variant 'step2', did you mean 'step.2'" kirosim run --no-live --tuning "$good" \
    --scene "$examples/scenes/natural.yaml" --variant step2
expected=2 refuses "^kirosim: unknown option '--varint' of run, did you mean '--variant'\?$" kirosim run --varint step2
expected=2 refuses "^kirosim: unknown command 'rn', did you mean 'run'\?$" kirosim rn --scene "$scene"
expected=2 refuses "^kirosim: unexpected argument 'extra' of variants, expected no more$" kirosim variants --scene "$scene" extra
refuses "second camera" kirosim run --no-live --tuning "$good" --scene "$scene" --csv-second "$work/out.csv"

refuses "scene.yaml:2:[0-9]+: " kirosim run --no-live --tuning "$good" --scene "$work/scene.yaml" --debug-data "$work/out.dbg"
refuses "good.bin: no file of debug records" kirotune debug "$good"
# The table of an instance stays allocated on purpose.
ASAN_OPTIONS=detect_leaks=0 kirosim run --no-live --quiet --tuning "$good" --scene "$scene" --frames 2 --debug-data "$work/run.dbg" >/dev/null || exit 1
refuses "run.dbg: no frame 3, there are frames 1 to 2" kirotune debug "$work/run.dbg" --frame 3
head -c 400000 "$work/run.dbg" >"$work/cut.dbg"
refuses "cut.dbg: cut within record 1" kirotune debug "$work/cut.dbg"

ASAN_OPTIONS=detect_leaks=0 kirosim run --no-live --quiet --tuning "$good" --scene "$scene" --frames 3 --csv "$work/trace.csv" >/dev/null || exit 1
sed '3s/,[^,]*$/,wide/' "$work/trace.csv" >"$work/slip.csv"
refuses "slip.csv:3: 'wide' found for banding, expected a number$" kirosim report "$work/slip.csv" -o "$work/out.html"
refuses "slip.csv:3: " kirosim report "$work/trace.csv" --against "$work/slip.csv" -o "$work/out.html"
refuses "slip.csv:3: " kirosim run --no-live --tuning "$good" --scene "$scene" --report "$work/out.html" --against "$work/slip.csv"
refuses "good.bin:1: no column frame in the header" kirosim report "$good" -o "$work/out.html"
refuses "^kirosim: .*trace.csv" kirosim report "$work/trace.csv" -o "$work/trace.csv"
expected=2 refuses "^kirosim: .*--report" kirosim run --no-live --tuning "$good" --scene "$scene" --pictures 10

refuses "^kirosim: localhost: no IPv4 address for live tuning$" kirosim run --tuning "$good" --scene "$scene" --live-address localhost
refuses "^kirosim: 192.0.2.1: no address of this machine for live tuning$" kirosim run --tuning "$good" --scene "$scene" --live-address 192.0.2.1
refuses "^nobody listens at 127.0.0.1:1: Connection refused$" kirotune live device --json --port 1

refuses "nowhere/run.rec: No such file or directory" kirosim run --no-live --tuning "$good" --scene "$scene" --record "$work/nowhere/run.rec"
ASAN_OPTIONS=detect_leaks=0 kirosim run --quiet --tuning "$good" --scene "$scene" --frames 2 --record "$work/run.rec" >/dev/null || exit 1
ASAN_OPTIONS=detect_leaks=0 kirosim replay "$work/run.rec" | grep -q "^replayed 2 frames, [0-9]* calls: the same$" ||
    { echo "a recording is not replayed"; failures=$((failures + 1)); }
refuses "phone.yaml: not the tuning of the recording, which is .*good.bin .*--force takes it" \
    kirosim replay "$work/run.rec" --tuning "$examples/tunings/phone.yaml"
cp "$good" "$work/kept.bin"
kirotune compile "$examples/tunings/phone.yaml" -o "$good"
refuses "good.bin: has changed since the recording .*--force takes it" kirosim replay "$work/run.rec"
mv "$work/kept.bin" "$good"
head -c 100000 "$work/run.rec" >"$work/cut.rec"
ASAN_OPTIONS=detect_leaks=0 refuses "cut.rec: cut or damaged at byte [0-9]+: a chunk CALL" kirosim replay "$work/cut.rec"
refuses "good.bin: no recording" kirosim replay "$good"
mv "$good" "$good.away"
ASAN_OPTIONS=detect_leaks=0 refuses "good.bin: .*--tuning names another" kirosim replay "$work/run.rec"
mv "$good.away" "$good"

# What the library complains of comes line by line, with level and place, and reads the same in every run.
printf 'modes: {Default: {modules: {kirodbconvbase: {data: [{}]}}}}\n' >"$work/dead.yaml"
readonly complaint='^kirosim: (error|warning): ([a-z0-9_]+\.(cpp|h):[0-9]+|tuning store|[^ ]+\.yaml): .'
for run in one two; do
    ASAN_OPTIONS=detect_leaks=0 kirosim run --no-live --quiet --verbose --frames 3 --tuning "$work/dead.yaml" \
        --scene "$scene" >"$work/stdout" 2>"$work/verbose.$run"
done
grep -q 'm_pConvBase:(set) ' "$work/verbose.one" && ! grep -Evq "$complaint" "$work/verbose.one" &&
    cmp -s "$work/verbose.one" "$work/verbose.two" ||
    { echo "complaints without level or place, or with addresses"; head -n 5 "$work/verbose.one"; failures=$((failures + 1)); }

# Bad usage and a camera that controls nothing have a status of their own.
ends_with() {
    ASAN_OPTIONS=detect_leaks=0 kirosim run --no-live --quiet --scene "$scene" "${@:2}" >/dev/null 2>&1
    local status=$?
    [ $status -eq "$1" ] || { echo "status $status, expected $1: ${*:2}"; failures=$((failures + 1)); }
}
ends_with 2 --tuning "$good" --frames 0
ends_with 3 --tuning "$work/dead.yaml" --frames 5

for output in out.csv out.bin out.dbg out.html; do
    [ ! -e "$work/$output" ] || { echo "$output was left behind"; failures=$((failures + 1)); }
done
exit $((failures > 0))
