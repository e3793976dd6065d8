#!/usr/bin/env bash
# What people type, and what they are told: advice on slips, "-" for standard streams, JSON, completion, manual pages.
# usage: commandline.sh DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES [LAUNCHER OF PROGRAMS...]
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
kirotune() { "${launcher[@]}" "$bin/kirotune" "$@"; }
fail() {
    echo "$*"
    failures=$((failures + 1))
}

# Misuse has a status of its own and one line: TEXT, then the command line.
misuses() {
    local text=$1 status
    shift
    "$@" >stdout 2>stderr
    status=$?
    [ $status -eq 2 ] && [ "$(cat stderr)" = "$text" ] || fail "status $status, expected 2 and '$text': $* says $(cat stderr)"
}
misuses "kirotune: unknown command 'chek', did you mean 'check'?" kirotune chek a.bin
misuses "kirotune: no command given, expected one of: new, compile, dump, info, check, schema, reference, debug, live, page" kirotune
misuses "kirotune: unknown option '--outptu' of compile, did you mean '--output'?" kirotune compile a.yaml --outptu=b.bin
misuses "kirotune: unknown option '--prot' of get, did you mean '--port'?" kirotune live get Default kiroev --prot 1
misuses "kirotune: unexpected argument 'b.bin' of dump, expected no more" kirotune dump a.bin b.bin
misuses "kirosim: unknown option '--tunning' of run, did you mean '--tuning'?" kirosim run --tunning a.bin --scene b.yaml
misuses "kirosim: --seed: 'x' found, expected a number up to 18446744073709551615, or a range of at most 10000 such as 1..8" kirosim run --seed x --tuning a.bin --scene b.yaml
[[ $(kirotune --version) =~ ^kirotune\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fail 'kirotune does not tell its version'

# Standard streams, whichever kind of tuning comes; messages call them by name.
readonly scene=$examples/scenes/tunnel.yaml
readonly run=(kirosim run --no-live --quiet --frames 3)
cp "$examples/tunings/minimal.yaml" t.yaml
kirotune compile t.yaml -o t.bin || exit 1
kirotune dump t.bin >t.dump
kirotune dump - <t.bin | kirotune compile - -o - | kirotune dump - -o - | cmp -s - t.dump || fail 'a tuning changes in pipes'
"${run[@]}" --tuning t.bin --scene "$scene" --csv t.csv --debug-data t.dbg >t.summary || exit 1
for tuning in t.bin t.yaml; do
    cat $tuning | kirotune check - || fail "kirotune check does not take $tuning from a pipe"
    "${run[@]}" --tuning - --scene "$scene" --csv - <$tuning 2>summary | cmp -s - t.csv || fail "another trace with $tuning from stdin"
    cmp -s summary t.summary || fail 'a trace on stdout takes the summary along'
done
cat t.dbg | kirotune debug - --list | grep -q . || fail 'no debug records from a pipe'
says() {
    local text=$1
    shift
    "$@" >stdout 2>stderr
    [[ $(cat stderr) == $text ]] || fail "expected '$text': $* says $(cat stderr)"
}
says 'stdin:1:1: *' kirotune compile - -o never.bin <<<'x'
says 'stdin: is a text tuning, expected a parameter file; make one with: kirotune compile - -o OUT' kirotune dump - <t.yaml
says 'kirosim: stdout: both --csv and --debug-data, *' "${run[@]}" --tuning t.bin --scene "$scene" --csv - --debug-data -
[ ! -e ./- ] && [ ! -e never.bin ] || fail 'a file was left'

if command -v python3 >/dev/null; then
    kirotune info --json t.bin | python3 -c 'import json, sys
info = json.load(sys.stdin)
assert info["version"] == "7.0.0" and info["sections"]["data"]["bytes"] > 0, info
assert [mode["path"] for mode in info["tables"][0]["modes"]][0] == "Default", info' || fail 'no JSON of a parameter file'
    "${run[@]}" --json --tuning t.bin --scene "$scene" 2>/dev/null | python3 -c 'import json, sys
text, run = open("t.summary").read(), json.load(sys.stdin)
assert f"""{run["distanceFromTargetEV"]:.4f} EV""" in text and run["legal"] and run["steps"][0]["timeS"] == 0, run' || fail 'no JSON of a run'
fi

# A report names the command that made it, as a shell would take it again; in JSON a backslash is two.
printf 'frame,time_s\n1,0\n' >one.csv
kirosim report one.csv -o "it's.html" && grep -qF "kirosim report one.csv -o 'it'\\\\''s.html'" "it's.html" ||
    fail "a report does not name its command"
kirosim report - -o - <one.csv | grep -q '"title":"stdin"' || fail "no report from stdin to stdout"

# Completion and manual pages come from the options themselves.
# Usage: completes WORDS... for what the last word is completed to.
completes() {
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
    "_$1"
    echo "${COMPREPLY[*]}"
}
for program in kirotune kirosim; do
    $program --print-bash-completion >completion && bash -n completion && . ./completion || fail "no completion of $program"
    $program --print-man-page >$program.1
    for section in NAME SYNOPSIS OPTIONS COMMANDS; do
        grep -q "^\.SH $section\$" $program.1 || fail "no section $section in the manual page of $program"
    done
done
[ "$(completes kirotune ch)" = check ] || fail "'kirotune ch' is not completed to check"
[ "$(completes kirotune live --po)" = --port ] || fail "'kirotune live --po' is not completed to --port"
[ "$(completes kirosim run --tuning x --sc)" = --scene ] || fail "'kirosim run --sc' is not completed to --scene"
if command -v man >/dev/null && man --version >/dev/null 2>&1; then
    man -l ./kirotune.1 2>man.errors | grep -q -- '--output FILE' && [ ! -s man.errors ] || fail "the manual page does not render: $(cat man.errors)"
fi
exit $((failures > 0))
