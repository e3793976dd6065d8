#!/usr/bin/env bash
# What is installed is all that a host needs: every header compiles on its own, the example host builds in both ways
# outside of the source tree, finds its exposure, and the tree still works after it was moved.
# usage: install.sh BUILD_DIRECTORY SOURCE_DIRECTORY COMPILER
set -euo pipefail
build=$(readlink -f "$1")
source=$(readlink -f "$2")
compiler=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'echo "install.sh: failed in line $LINENO" >&2' ERR

fail() {
    echo "install.sh: $*" >&2
    exit 1
}

# Configured for another place than it goes to, and moved afterwards: nothing may hold on to a path.
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/tree"
readonly tree=$work/tree
readonly headers=$tree/include/kirocore
export CMAKE_GENERATOR=Ninja
export PKG_CONFIG_PATH=$(dirname "$(find "$tree" -name kirocore.pc)")
read -ra cflags <<<"$(pkg-config --cflags kirocore)"
read -ra libs <<<"$(pkg-config --libs kirocore)"
libdir=$(pkg-config --variable=libdir kirocore)

cd "$work"
grep -rlF "$source" "$tree/include" "$tree"/lib*/cmake "$PKG_CONFIG_PATH" 2>/dev/null && fail "names the source tree"

for program in kirotune kirosim; do
    bash -n "$tree/share/bash-completion/completions/$program" || fail "no completion of $program"
    grep -q '^\.SH COMMANDS$' "$tree/share/man/man1/$program.1" || fail "no manual page of $program"
done

# The lab finds its package, its corpora and the programs beside it, wherever it was moved to.
if /usr/bin/python3 -c 'import optuna, pandas, tqdm, yaml' 2>/dev/null; then
    "$tree/bin/kirolab" run "$tree/share/kirolab/lab/corpora/basic.yaml" --seeds 1 --tuning "$source/examples/tunings/phone.yaml" \
        --store store -o figures.csv --quiet && [ -s figures.csv ] || fail "kirolab does not run"
fi

mkdir headers
for header in $(cd "$headers" && find . -name '*.h' | sort); do
    printf '#include "%s"\n' "${header#./}" >"headers/$(echo "${header#./}" | tr / _).cpp"
done
[ "$(find headers -name '*.cpp' | wc -l)" -gt 60 ] || fail "headers are missing"
find headers -name '*.cpp' -print0 |
    xargs -0 -P "$(nproc)" -I{} "$compiler" -std=c++20 -Wall -Wextra -Werror -fsyntax-only "${cflags[@]}" {} ||
    fail "a header does not compile on its own"

cp -r "$source/examples/host" example
cmake -S example -B cmake_way -DCMAKE_PREFIX_PATH="$tree" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" >/dev/null
cmake --build cmake_way >/dev/null
"$compiler" -std=c++20 -Wall -Wextra -Werror "${cflags[@]}" example/main.cpp -o pkgconfig_way "${libs[@]}" \
    -Wl,-rpath,"$libdir"
cp cmake_way/minihost cmake_minihost

"$tree/bin/kirotune" compile "$source/examples/tunings/phone.yaml" -o phone.bin
for host in ./cmake_minihost ./pkgconfig_way; do
    "$host" phone.bin 1 >dim.txt 2>errors.txt || fail "$host: $(cat errors.txt)"
    "$host" phone.bin 4 >bright.txt 2>/dev/null
    # Four times the light at the same luma is a quarter of the exposure, up to what the tuning makes of bright light.
    awk -v host="$host" '
        function exposure() { return $6 * $8 }
        /^snapshot/ { gains[FILENAME] = ($7 >= 1 && $11 >= 1); next }
        FNR == 1 { start[FILENAME] = exposure() }
        FNR == 50 { before[FILENAME] = exposure() }
        { last[FILENAME] = exposure(); settled[FILENAME] = /settled/ }
        function bad(text) { print host ": " text; status = 1 }
        END {
            for (file in last) {
                change = last[file] / before[file]
                if (!settled[file] || change < 0.99 || change > 1.01) bad(file " does not settle")
                if (last[file] == start[file]) bad(file " does not move")
                if (!gains[file]) bad(file " has no gains for a snapshot")
            }
            ratio = last["dim.txt"] / last["bright.txt"]
            if (ratio < 3 || ratio > 5) bad("four times the light changes the exposure by " ratio)
            exit status
        }' dim.txt bright.txt >verdict.txt || fail "$(cat verdict.txt)"

    status=0
    "$host" missing.bin >/dev/null 2>errors.txt || status=$?
    [ $status -eq 1 ] && grep -q missing.bin errors.txt || fail "$host: status $status for a missing file"
done

# A device's tree has no stand-in: the package then asks for the framework's library, and takes the one that it is told.
find "$tree" -name 'kirocoreDeskTargets*' -delete
mkdir framework
mv "$libdir"/libtavocommonutils.so.0 framework/
if cmake -S example -B without -DCMAKE_PREFIX_PATH="$tree" -DCMAKE_CXX_COMPILER="$compiler" >configure.txt 2>&1; then
    fail "the package is found without the utility library"
fi
grep -q "set kirocore_UTILITY_LIBRARY" configure.txt || fail "does not say what is missing: $(cat configure.txt)"
cmake -S example -B device -DCMAKE_PREFIX_PATH="$tree" -DCMAKE_CXX_COMPILER="$compiler" \
    -Dkirocore_UTILITY_LIBRARY="$work/framework/libtavocommonutils.so.0" >/dev/null
cmake --build device >/dev/null
LD_LIBRARY_PATH=$work/framework ./device/minihost phone.bin >/dev/null 2>&1
