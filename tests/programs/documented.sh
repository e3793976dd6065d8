#!/usr/bin/env bash
# What README and docs show is what the programs do: runs every command line in their code blocks, and looks for every
# sample of output, line by line and in order, in what the commands of the block before have printed. "..." stands for
# anything, at the end of a line or in its place. A block with a language behind its backquotes is not looked at.
# Commands that need a running camera are left out, and those of this repository's script but for its demonstration.
# usage: documented.sh BINARIES SOURCE_DIRECTORY
set -uo pipefail
readonly bin=$(readlink -f "$1") source=$(readlink -f "$2")
readonly work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
    echo "$1: $2"
    failures=$((failures + 1))
}

# The code blocks of a page: "+" begins one, then "line number, $ or blank, text". A command may go on behind a backslash.
blocks() {
    awk '
        /^```/ { is_block = !is_block; is_code = is_block && $0 == "```"; if (is_code) print "+"; next }
        !is_code { next }
        { line = $0; if (pending != "") sub(/^ +/, "", line); line = pending line; pending = "" }
        line ~ /\\$/ { sub(/ *\\$/, " ", line); pending = line; next }
        line ~ /^(\$ )?(build\/release\/bin\/)?kiro[a-z]+ / || line == "./dev demo" || line ~ /^\.\/dev demo +#/ {
            sub(/^\$ /, "", line); sub(/ +#.*|  .*/, "", line); print FNR "\t$\t" line; next
        }
        line ~ /^\.\/dev / { next }
        { print FNR "\t \t" line }
    ' "$1"
}

# What the demonstration runs once everything is built.
demo_commands() {
    awk '/^demo\(\)/, /^}/' "$source/dev" | grep '^    "\$bin/' | sed 's/"\$bin\//"/; s/"//g'
}

# A loop ends after the rounds that a sample shows at most; without that, it would need somebody to stop it.
run() {
    local command=$1
    [[ $command = *"kirotune live "* ]] && return
    [ "$command" = "./dev demo" ] && command=$(demo_commands)
    command=${command//--realtime --loop/--loops 3}
    timeout 300 bash -c "${command//build\/release\/bin\//}" >>"$work/output" 2>&1
}

# Removes what was printed up to a line, and the line. An expected line ends with "..." if more may follow.
expect() {
    awk -v wanted="$1" '
        BEGIN { sub(/[ \t]+$/, "", wanted); is_open = sub(/ *\.\.\.$/, "", wanted) }
        { sub(/[ \t]+$/, "") }
        found { print; next }
        $0 == wanted || (is_open && substr($0, 1, length(wanted)) == wanted) { found = 1 }
        END { exit !found }
    ' "$work/output" >"$work/rest" && mv "$work/rest" "$work/output"
}

check_page() {
    local page=$1 number kind text has_commands=false is_new=false
    : >"$work/output"
    while IFS=$'\t' read -r number kind text; do
        if [ "$number" = + ]; then
            is_new=true
        elif [ "$kind" = '$' ]; then
            $is_new && : >"$work/output"
            is_new=false
            has_commands=true
            run "$text" || fail "$page:$number" "ends with $?: $text"
        elif $has_commands && [[ ! $text =~ ^\ *(\.\.\.)?$ ]]; then
            expect "$text" || fail "$page:$number" "not printed: $text"
        fi
    done < <(blocks "$source/$page")
}

cd "$work" && mkdir out && ln -s "$source/examples" examples && cp examples/tunings/phone.yaml tuning.yaml
echo 'modes: {Default: {modules: {kiroconvergence: {unitStepSize: 0.5}}}}' | tee edits.yaml >fix.yaml
export PATH=$bin:$PATH
cd "$source"
pages=(README.md docs/tuning-guide.md docs/first-tuning.md docs/parameter-file.md docs/recording.md docs/guide/*.md)
cd "$work"
for page in "${pages[@]}"; do
    check_page "$page"
done
[ "$failures" -eq 0 ]
