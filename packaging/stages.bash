# What ./run and ./test share: they say what they do, where its log is, and what to do next when it
# fails. Both run in the tree's folder.

say() {
    echo "${0##*/}: $*"
}

# die MESSAGE [WHAT TO DO NEXT]...
die() {
    say "$1" >&2
    shift
    [ $# -eq 0 ] || printf '  → %s\n' "$@" >&2
    exit 1
}

make_build_folder() {
    mkdir -p build 2>/dev/null || die "you cannot write in $PWD" "work in a copy of your own: cp -r '$PWD' ~/"
    local foreign
    foreign=$(find build -maxdepth 2 ! -writable -print -quit)
    [ -z "$foreign" ] || die "$PWD/$foreign is not yours to write" \
        "it was built by $(stat -c %U "$foreign"), who may remove it: rm -r '$PWD/build'; or work in a copy of your own"
}

# install_packages PURPOSE...: what it says is enough when it fails.
install_packages() {
    say "looking for the packages that it takes"
    packaging/install-packages "$@" || exit 1
}

# What the log of CMake asks for. A copied tree brings a build folder made for its former place; what
# can be done without is told in lines that begin with "--".
next_after_configure() {
    local error='^\( \|CMake Error\).*'
    ! grep -q 'CMakeCache.txt directory' "$1" || echo "the build was made at another place: rm -r '$PWD/build', then again"
    ! grep -q "$error\(Could not find\|Could NOT find\|unable to find a build program\|No CMAKE_[A-Z]*_COMPILER\|not found in the PATH\)" "$1" ||
        echo "a package is missing: docs/building.md names those of several systems"
    ! grep -q "$error\(or higher is required\|version too new\)" "$1" || echo "this CMake is too old: docs/building.md says what it takes"
}

# build PRESET [TARGET]...
build() {
    local preset=$1 log=$PWD/build/configure.log next
    shift
    command -v cmake >/dev/null || die "cmake is not installed" "docs/building.md names the packages of several systems"
    say "configuring build/$preset (log: $log)"
    cmake --preset "$preset" >"$log" 2>&1 || {
        tail -n 20 "$log" >&2
        mapfile -t next < <(next_after_configure "$log")
        die "CMake failed, see above" "${next[@]}"
    }
    log=$PWD/build/build.log
    say "building, which takes minutes the first time (log: $log)"
    cmake --build --preset "$preset" ${1:+--target "$@"} 2>&1 | tee "$log" ||
        die "the build failed, see above" "where memory ran out (\"Killed\"): CMAKE_BUILD_PARALLEL_LEVEL=1 ./${0##*/}"
}
