#!/usr/bin/env bash
# The one set-up step, shared by demo.sh and test.sh, which source this file.
#
#   set_up build|test|locales
#                            makes sure that what a build (or a build and its tests) needs is there:
#                            where there is apt (Debian, Ubuntu) it installs exactly what is
#                            missing, elsewhere it says what to install; it goes on when all is there
#   use_utf8                 sets a locale in which file names may have any letters
#   configure PRESET         configures build/PRESET
#   build PRESET [TARGET...] configures and builds into build/PRESET
#   say TEXT, die TEXT       what the script does next, and why it cannot go on
#
# Run by itself it sets up for the tests: scripts/setup.sh [build|test]

#
# root is the project's folder. CMake builds nothing in a folder whose name holds quotes and the
# like, so that there root is a link to it with a plain name, in the user's cache.

plain_name() {
    local LC_ALL=C
    case $1 in
    *[!A-Za-z0-9/._+\ -]*) return 1 ;;
    esac
}

find_root() {
    local cache
    root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." >/dev/null && pwd -P)
    if ! plain_name "$root"; then
        cache=${XDG_CACHE_HOME:-${HOME-}/.cache}/corvane-launcher
        if ! plain_name "$cache" || ! mkdir -p -- "$cache" 2>/dev/null; then
            cache=$(mktemp -d)
        fi
        cache=$cache/$(printf '%s' "$root" | cksum | tr ' ' -)
        ln -sfn -- "$root" "$cache"
        root=$cache
    fi
}

say() { printf '\n== %s\n' "$*"; }
die() {
    printf '%s\n' "$*" >&2
    exit 1
}

# What is needed: who needs it, the Debian package, and a check for it that works on any system.
# Tests that need something "optional" are skipped where it cannot be installed.
needs() {
    cat <<'ROWS'
build     g++                    compiles_cxx20
build     cmake                  cmake_is_new_enough
build     ninja-build            has ninja
build     python3                has python3
build     libgtest-dev           has_header gtest/gtest.h
build     libgmock-dev           has_header gmock/gmock.h
build     libbenchmark-dev       has_header benchmark/benchmark.h
build     libarchive-dev         has_header archive.h
build     libzip-dev             has_header zip.h
build     libssl-dev             has_header openssl/evp.h
build     libcli11-dev           has_header CLI/CLI.hpp
build     nlohmann-json3-dev     has_header nlohmann/json.hpp
build     gettext                has msgfmt
build     libgettextpo-dev       has_header gettext-po.h
build     default-jdk-headless   has_jdk
test      git                    has git
test      ant                    has ant
test      clang                  has clang++
test      clang-format           has clang-format
test      clang-tidy             has clang-tidy
test      libclang-rt-dev        has_libfuzzer
test      file                   has file
test      procps                 has ps
test      shellcheck             has shellcheck
optional  dpkg-dev               has dpkg-shlibdeps
optional  g++-powerpc-linux-gnu  has powerpc-linux-gnu-g++
optional  g++-aarch64-linux-gnu  has aarch64-linux-gnu-g++
optional  qemu-user              has qemu-ppc
locales   locales                has_locale_sources
ROWS
}

has_locale_sources() { has localedef && [ -e /usr/share/i18n/locales/de_DE ]; }
has() { command -v "$1" >/dev/null 2>&1; }
has_header() {
    printf '#if !__has_include(<%s>)\n#error\n#endif\n' "$1" | g++ -E -x c++ - >/dev/null 2>&1
}
compiles_cxx20() {
    printf '#include <concepts>\nconstinit int x = 0;\n' |
        g++ -std=c++20 -fsyntax-only -x c++ - >/dev/null 2>&1
}
cmake_is_new_enough() { # 3.22, for the presets
    local number='\([0-9][0-9]*\)' version
    version=$(cmake --version 2>/dev/null | sed -n "1s/^[^0-9]*$number\.$number.*/\1 * 1000 + \2/p")
    [ $((${version:-0})) -ge 3022 ]
}
has_jdk() {
    { has javac && has jar; } || [ -x "${JAVA_HOME-}/bin/javac" ]
}
has_libfuzzer() {
    echo 'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }' |
        clang++ -fsanitize=fuzzer -x c++ -o /dev/null - >/dev/null 2>&1
}

# missing KIND...: the packages of these kinds that are missing, one a line.
missing() {
    local kind package check
    while read -r kind package check; do
        case " $* " in
        *" $kind "*) $check || echo "$package" ;;
        esac
    done < <(needs)
}

# Debian numbers the library of clang's sanitizers by clang's version.
debian_name() {
    local numbered=
    if [ "$1" = libclang-rt-dev ]; then
        numbered=$(apt-cache depends clang 2>/dev/null |
            sed -n 's/.*Depends: clang-\([0-9][0-9]*\)$/libclang-rt-\1-dev/p')
    fi
    echo "${numbered:-$1}"
}

# Never waits for a password where nobody can type one.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif ! has sudo; then
        return 1
    elif [ -t 0 ]; then
        sudo "$@"
    else
        sudo -n "$@"
    fi
}

apt_install() {
    local packages=() package
    for package in "$@"; do
        packages+=("$(debian_name "$package")")
    done
    say "Installing ${packages[*]}"
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${packages[@]}"
}

set_up() {
    local kinds=(build) needed optional=()
    if [ "$1" = test ]; then
        kinds=(build test)
        mapfile -t optional < <(missing optional)
    elif [ "$1" = locales ]; then
        kinds=(build locales)
    fi
    mapfile -t needed < <(missing "${kinds[@]}")
    if has apt-get && [ $((${#needed[@]} + ${#optional[@]})) != 0 ]; then
        as_root apt-get update -q || say "The package lists could not be renewed"
        if [ "${#needed[@]}" != 0 ]; then
            apt_install "${needed[@]}" || say "The installation failed"
            mapfile -t needed < <(missing "${kinds[@]}")
        fi
        if [ "${#optional[@]}" != 0 ]; then
            apt_install "${optional[@]}" || say "Going on without ${optional[*]}"
        fi
    fi
    if [ "${#needed[@]}" != 0 ]; then
        die "
Missing: what these Debian packages hold: ${needed[*]}
(g++ has to know C++20, cmake has to be 3.22 or later.) Please install it and start again."
    fi
}

# CI and cron often run in a locale without letters beyond ASCII, which a file name may hold.
use_utf8() {
    if [ "$(locale charmap 2>/dev/null)" != UTF-8 ] &&
        [ "$(LC_ALL=C.UTF-8 locale charmap 2>/dev/null)" = UTF-8 ]; then
        export LC_ALL=C.UTF-8
    fi
}

configure() {
    local preset=$1 folder=$root/build/$1 generator=()
    # The folder is named in full each time: from the current folder CMake would follow the link.
    if ! grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt"; then
        # A new folder, or one that was made where the project stood before.
        rm -rf -- "$folder"
        generator=(-G Ninja)
    fi
    cmake -S "$root" --preset "$preset" ${generator[@]+"${generator[@]}"}
}

build() {
    local preset=$1 folder=$root/build/$1 log=$root/build/$1.log
    shift
    say "Building ($preset)"
    mkdir -p -- "$root/build"
    if { configure "$preset" && cmake --build "$folder" ${1+--target "$@"}; } >"$log" 2>&1; then
        return 0
    fi
    cat -- "$log"
    printf '\nThe build failed; the text above is in %s\n' "$log"
    return 1
}

find_root
# Where ccache is installed a second build takes seconds. Paths count from the project's folder, so
# that a fresh clone gains, too.
if has ccache && [ -z "${CMAKE_CXX_COMPILER_LAUNCHER+set}" ]; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
fi
if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    set_up "${1:-test}"
fi
