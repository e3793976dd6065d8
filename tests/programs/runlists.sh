#!/usr/bin/env bash
# Many runs in one process: each leaves what it leaves alone, and one that fails does not keep the others from running.
# usage: runlists.sh DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES [LAUNCHER OF PROGRAMS...]
set -u
bin=$(readlink -f "$1")
examples=$(readlink -f "$2")
readonly bin examples launcher=("${@:3}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0
export ASAN_OPTIONS=detect_leaks=0  # the table of an instance stays allocated on purpose

kirosim() { "${launcher[@]}" "$bin/kirosim" "$@"; }
fail() {
    echo "$*"
    failures=$((failures + 1))
}

readonly scenes=$examples/scenes
readonly run=(run --no-live --quiet --frames 40 --tuning "$examples/tunings/phone.yaml")

# The flash learns and the object moves: what a run leaves behind in the process would show in the next.
kirosim "${run[@]}" --scene "$scenes/flash.yaml" --scene "$scenes/moving-subject.yaml" --scene "$scenes/natural.yaml" \
    --seed 5 --seed 1..2 --csv '{scene}-{seed}.csv' --json >lines.json 2>stderr || fail "a list fails: $(cat stderr)"
[ "$(wc -l <lines.json)" -eq 9 ] || fail 'a list does not print a line for each run'
grep -q '^{"scene": *"[^"]*natural.yaml", *"variant": *"", *"seed": *2,' lines.json || fail "lines do not name their run: $(cut -c 1-200 lines.json)"
for scene in flash moving-subject natural; do
    for seed in 1 5; do
        kirosim "${run[@]}" --scene "$scenes/$scene.yaml" --seed $seed --csv alone.csv >/dev/null || fail "$scene fails alone"
        cmp -s alone.csv "$scene-$seed.csv" || fail "$scene, seed $seed: another trace in a list than alone"
    done
done

kirosim "${run[@]}" --scene "$scenes/natural.yaml" --scene "$scenes/uniform.yaml" --scene missing.yaml --variant step+2 \
    --variant nowhere --csv '{scene}-{variant}.csv' >stdout 2>stderr
status=$?
[ $status -eq 1 ] || fail "status $status of a list with runs that fail, expected 1"
[ -s natural-step+2.csv ] && [ -s uniform-step+2.csv ] || fail 'a run that fails keeps others from running'
[ "$(grep -c '^kirosim: ' stderr)" -eq 4 ] && grep -q '^kirosim: natural nowhere: ' stderr || fail "failed runs are not named: $(cat stderr)"
[ "$(ls ./*-nowhere.csv missing* 2>/dev/null)" = '' ] || fail 'a run that fails leaves a file'

# A number that is set for the runs does what a patch of the tuning does, below the mode that has the module, too.
readonly member='kirodbconvbase/data[0].value.trigger1Data[0].trigger2Data[0].trigger3Data[0].triggerData.baseSpeed'
cat >patch.yaml <<'EOF'
modes:
  Default: {children: {Sensor.0: {children: {Usecase.Video: {modules: {kirodbconvbase: {
    data: {0: {value: {trigger1Data: {0: {trigger2Data: {0: {trigger3Data: {0: {triggerData: {baseSpeed: 0.5}}}}}}}}}}}}}}}}}
EOF
kirotune() { "${launcher[@]}" "$bin/kirotune" "$@"; }
kirotune compile "$examples/tunings/phone.yaml" --patch patch.yaml -o patched.bin || fail 'the patch does not fit'
echo 'events: [{time: 0, modes: [Sensor.0, Usecase.Video]}]
startOffsetEV: 3' >film.yaml
readonly film=(run --no-live --quiet --frames 40 --scene film.yaml)
kirosim "${film[@]}" --tuning patched.bin --csv patched.csv >stdout || fail 'a patched tuning fails'
kirosim "${film[@]}" --tuning "$examples/tunings/phone.yaml" --csv plain.csv >stdout || fail 'the scene fails'
kirosim "${film[@]}" --tuning "$examples/tunings/phone.yaml" --set "Default|Sensor.0|Usecase.Video/$member=0.5" \
    --csv set.csv >stdout || fail 'a number cannot be set'
cmp -s set.csv patched.csv || fail 'another trace with a number set than with one patched'
cmp -s set.csv plain.csv && fail 'a number that is set does nothing'

kirosim "${run[@]}" --scene "$scenes/natural.yaml" --seed 1..2 --loop >stdout 2>stderr
[ $? -eq 1 ] && grep -q 'would not end' stderr || fail 'a list begins with a run without end'
exit $((failures > 0))
