#!/usr/bin/env bash
# A person at a running camera: looks around, changes a speed, and sees the next steps of the light settle later.
# usage: tuneacamera.sh DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES [LAUNCHER OF PROGRAMS...]
set -u
readonly bin=$1 examples=$2
readonly launcher=("${@:3}")
work=$(mktemp -d)
failures=0
# The table of an instance stays allocated on purpose.
export ASAN_OPTIONS=detect_leaks=0 XDG_STATE_HOME=$work/state
trap 'kill $neighbour $camera 2>/dev/null; wait; rm -rf "$work"' EXIT  # the next test wants the port

# The port that a tool tries without --port is another camera's.
: >"$work/neighbour" >"$work/camera"  # to look into before they say anything
"${launcher[@]}" "$bin/kirosim" run --realtime --loop --quiet --tuning "$examples/tunings/minimal.yaml" \
    --scene "$examples/scenes/tunnel.yaml" >"$work/neighbour" 2>&1 &
readonly neighbour=$!
until grep -q '^live tuning at port' "$work/neighbour" || ! kill -0 $neighbour 2>/dev/null; do sleep 0.05; done

# The speeds of videos far from the target are those of other modes near it, so that the two share a list.
sed 's/{baseSpeed: 0.2, baseCapping: 3.0, drcSpeed: 0.2}/{baseSpeed: 0.59, baseCapping: 0.55, drcSpeed: 0.45}/' \
    "$examples/tunings/phone.yaml" >"$work/phone.yaml"
"${launcher[@]}" "$bin/kirosim" run --loop --quiet --tuning "$work/phone.yaml" \
    --scene "$examples/scenes/step-loop.yaml" >"$work/camera" 2>&1 &
readonly camera=$!
until grep -q '^live tuning at port' "$work/camera" || ! kill -0 $camera 2>/dev/null; do sleep 0.05; done
readonly port=$(sed -n 's/^live tuning at port //p' "$work/camera")
grep -q "^kirosim: port 19286 is taken, .* --port $port$" "$work/camera" ||
    { echo 'nothing says that the port is another one'; failures=1; }

live() { "${launcher[@]}" "$bin/kirotune" live --timeout 30 --port "$port" "$@" >"$work/stdout" 2>"$work/stderr"; }

fail() {
    echo "$1"
    cat "$work/stdout" "$work/stderr"
    failures=$((failures + 1))
}

answers() {
    local pattern=$1
    shift
    live "$@" && grep -Eq "$pattern" "$work/stdout" || fail "kirotune live $*: expected '$pattern'"
}

refuses() {
    local pattern=$1
    shift
    live "$@" && fail "kirotune live $* succeeds"
    [ "$(grep -c '' "$work/stderr")" -eq 1 ] && grep -Eq "$pattern" "$work/stderr" || fail "kirotune live $*: expected one line with '$pattern'"
}

# The frames that the step up took to settle in the round of that number.
frames_of_round() {
    until grep -q "^round $1: step +" "$work/camera" || ! kill -0 $camera 2>/dev/null; do sleep 0.05; done
    sed -n "s/^round $1: step +.* settled after \([0-9]*\) frames/\1/p" "$work/camera" | head -n 1
}
rounds_so_far() { sed -n 's/^round \([0-9]*\): .*/\1/p' "$work/camera" | tail -n 1; }

readonly speeds='data[2].value.trigger1Data[%d].trigger2Data[0].trigger3Data[0].triggerData.baseSpeed'
readonly near=$(printf "$speeds" 1) far=$(printf "$speeds" 2)

answers 'BinaryTag=phone' device
answers '^Sensor.10$' modes
answers '^Usecase\.Video' modes 'Default|Sensor.0'
answers '^kirodbconvbase$' modules 'Default|Sensor.0'
refuses "no mode 'Sensor.9999' below 'Default'" modules 'Default|Sensor.9999'
answers '"name": "safeExposureTime"' controls --json
answers 'unitStepSize +Float' info Default kiroconvergence
answers '^unitStepSize +0\.1' get 0 kiroconvergence
answers 'unitStepSize=0\.1[0-9]*  frameNumber=[0-9]+$' watch Default kiroconvergence unitStepSize --controls frameNumber --count 2
refuses "publishes no 'luxIndx', did you mean 'luxIndex'" watch --controls luxIndx
refuses 'no such mode path, module or member' get Default kiroconvergence nothing
refuses "expected a decimal number" set Default kiroconvergence unitStepSize=1e3
refuses "kiroconvergence" get Default kiroconvergance
refuses 'unitStepSize=-1: expected above 0 to 1 \(log steps of 3 percent\); --force sends it' set Default kiroconvergence unitStepSize=-1
answers '^unitStepSize +Float +0\.1[0-9]* +above 0 to 1 \(log steps' info Default kiroconvergence

readonly before=$(frames_of_round 1)
answers '0\.1' set Default kirodbconvbase "$near=0.1" "$far=0.1"
grep -q '^shared, and set as well: Default|Sensor.0|Usecase.Video kirodbconvbase.data\[0\].value.*baseSpeed$' "$work/stderr" &&
    grep -q "^camera at 127.0.0.1:$port: kirosim;BinaryTag=phone$" "$work/stderr" &&
    [ "$(grep -c '' "$work/stderr")" -eq 2 ] || fail 'the camera or the other module with the speed is not named, or more than that one'
# The round of the edit is a mixture; the one behind it is not.
readonly after=$(frames_of_round $(($(rounds_so_far) + 2)))
[ "$after" -ge $((2 * before)) ] || fail "the steps settle after $before frames, and after $after at a sixth of the speed"

answers '^unitStepSize +0\.1[0-9]* .* 2(\.0)?$' set Default kiroconvergence unitStepSize=2 --force
kill -INT $camera
wait $camera || fail "the camera ends with status $?"
grep -q '^ripple of the safe exposure' "$work/camera" || fail 'the camera ends without a summary'
exit $((failures > 0))
