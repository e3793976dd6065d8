#!/usr/bin/env bash
# What a person sets at a running camera is not lost: it shows in a comparison, can be taken back, and makes a tuning.
# usage: keepedits.sh DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES
set -u
readonly bin=$1 examples=$2
work=$(mktemp -d)
failures=0
camera=
# The table of an instance stays allocated on purpose.
export ASAN_OPTIONS=detect_leaks=0 XDG_STATE_HOME=$work/state
trap 'kill $camera 2>/dev/null; wait; rm -rf "$work"' EXIT  # the next test wants the port

start() {
    [ -z "$camera" ] || { kill -INT $camera; wait $camera; }
    : >"$work/camera"  # what the last camera said is not this one's
    "$bin/kirosim" run --loop --quiet --realtime --tuning "$1" --scene "$examples/scenes/step-loop.yaml" \
        >"$work/camera" 2>&1 &
    camera=$!
    until grep -q '^live tuning at port' "$work/camera" || ! kill -0 $camera 2>/dev/null; do sleep 0.05; done
    port=$(sed -n 's/^live tuning at port //p' "$work/camera")
}
kirotune() { "$bin/kirotune" "$@"; }
live() { kirotune live --timeout 30 --port "$port" "$@" >"$work/stdout" 2>"$work/stderr"; }

fail() {
    echo "$1"
    cat "$work/stdout" "$work/stderr"
    failures=$((failures + 1))
}
does() { live "$@" || fail "kirotune live $*: status $?"; }
says() { [ "$(cat "$work/stdout")" = "$1" ] || fail "expected: $1"; }
refuses() {
    local pattern=$1
    shift
    live "$@" && fail "kirotune live $* succeeds"
    [ "$(grep -c '' "$work/stderr")" -eq 1 ] && grep -Eq "$pattern" "$work/stderr" || fail "kirotune live $*: expected one line with '$pattern'"
}

# The speeds of videos far from the target are those of other modes near it, so that the two share a list; a mode of its own is
# like the one above it.
sed 's/{baseSpeed: 0.2, baseCapping: 3.0, drcSpeed: 0.2}/{baseSpeed: 0.59, baseCapping: 0.55, drcSpeed: 0.45}/' \
    "$examples/tunings/phone.yaml" >"$work/phone.yaml"
sed -i '0,/^      Sensor.0:$/s//      Sensor.0:\n        modules: {kirometering: {}}/' "$work/phone.yaml"
kirotune compile "$work/phone.yaml" -o "$work/phone.bin" || exit 1
readonly speeds='data[2].value.trigger1Data[%d].trigger2Data[0].trigger3Data[0].triggerData.baseSpeed'
readonly near=$(printf "$speeds" 1) far=$(printf "$speeds" 2)

start "$work/phone.yaml"
does diff --file "$work/phone.yaml"
says ''
refuses 'no edits to save' save "$work/patch.yaml"
refuses '0 commands since its start can be taken back, expected 1' undo

# The camera is named with the first edit, and with that alone.
does set Default kirodbconvbase "$near=0.2" "$far=0.2"
grep -q "^camera at 127.0.0.1:$port: kirosim;BinaryTag=phone$" "$work/stderr" || fail 'the camera is not named'
does set Default kiroconvergence unitStepSize=0.0001234567891
[ ! -s "$work/stderr" ] || fail 'the camera is named again'
does set 'Default|Sensor.0|Usecase.Snapshot' kirometering luxIndexOperation.refExposureForLuxIndexZero=123456789012
does set Default kirosync luxSyncConfig=Independent
does set Default kirodb2dmeterweight 'data[0].weights[3]=0.5'
does set Default kirodbconvbase.'data[0].value' tolerance=8 convSameDirection=true

# Taking back goes step by step; what is at its old number already stays.
does undo
says "Default kirodbconvbase.data[0].value.tolerance: 8 -> 1
Default kirodbconvbase.data[0].value.convSameDirection: 1 -> 0"
does set Default kirodbconvbase 'data[0].value.tolerance=8'
does diff Default --file "$work/phone.bin"
grep -Fxq 'Default kirodbconvbase.data[0].value.tolerance: 1 -> 8' "$work/stdout" &&
    grep -Fxq 'Default kirosync.luxSyncConfig: 1 (UseMaster) -> 0 (Independent)' "$work/stdout" &&
    grep -Fq "Default|Sensor.0|Usecase.Video kirodbconvbase.data[0].value" "$work/stdout" || fail 'a number is missing'
does diff --json 'Default|Sensor.0' --file "$work/phone.yaml"
grep -q '"path": "Default|Sensor.0",' "$work/stdout" && ! grep -q '"path": "Default",' "$work/stdout" || fail 'not that mode'
live diff --file "$examples/tunings/minimal.yaml" && fail 'another tuning counts as that of the camera'
grep -q "^.*minimal.yaml: its binary tag is 'minimal', but the camera is kirosim;BinaryTag=phone$" "$work/stderr" &&
    grep -q 'not the tuning of the camera, where Default .* is a number$' "$work/stderr" || fail 'it is not told why'
refuses 'none.bin: cannot be opened' diff --file "$work/none.bin"

# Whichever way the edits are found, the tuning with them is what the camera holds.
does save "$work/patch.yaml"
does save "$work/all.yaml" --file "$work/phone.yaml"
for patch in patch all; do
    kirotune compile "$work/phone.yaml" --patch "$work/$patch.yaml" -o "$work/$patch.bin" || fail "$patch.yaml: status $?"
    does diff --file "$work/$patch.bin"
    says ''
done
grep -q 'unitStepSize: 0.00012345679' "$work/patch.yaml" || fail 'digits are lost'
cmp -s "$work/patch.bin" "$work/all.bin" || fail 'the tunings of the journal and of the comparison differ'
refuses 'is a folder, expected a file' save "$work"

# A camera that is started anew has a journal of its own, and one that is damaged stops edits before they are sent.
start "$work/patch.bin"
refuses '0 commands since its start' undo
does diff --file "$work/all.bin"
says ''
does set Default kiroconvergence unitStepSize=0.5
grep -q '^camera at' "$work/stderr" && [ -s "$XDG_STATE_HOME/kirotune/127.0.0.1:$port.journal.before" ] ||
    fail 'no new journal for a camera that was started anew'
echo 'set' >>"$XDG_STATE_HOME/kirotune/127.0.0.1:$port.journal"
refuses "journal:4: no line of a journal of edits" set Default kiroconvergence unitStepSize=0.25
refuses "journal:4: no line of a journal of edits" undo
does get Default kiroconvergence unitStepSize
says 'unitStepSize  0.5'
exit $((failures > 0))
