#!/usr/bin/env bash
# Shows the messages of both stubs in some 70 locales, and in roots with the C library and the
# locales of other Debian releases, and compares what is seen with the translations.
#
# Usage: scripts/locales.sh [--show] [SUITE...]
#
# --show prints what each terminal shows. SUITE is a Debian release (default: bullseye trixie); its
# packages are fetched, not installed. The locales stay in build/locales, the roots in
# build/foreign: once they are there, the tests catalogue.locales* use them, too. The exit status is
# 0 when nothing differs; a root that cannot be fetched is named and left out.
set -uo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname -- "${BASH_SOURCE[0]}")/setup.sh"

show=()
if [ "${1-}" = --show ]; then
    show=(--show)
    shift
fi
suites=("$@")
[ $# != 0 ] || suites=(bullseye trixie)

check=$root/tests/catalogue/locales_test.py
bin=$root/build/release/bin
locales=$root/build/locales

# make_locales: compiles those that are not there yet. Locales of no interest here warn a lot.
make_locales() {
    local name source charset
    mkdir -p -- "$locales"
    while read -r name source charset; do
        [ -d "$locales/$name" ] ||
            localedef -i "$source" -f "$charset" "$locales/$name" >/dev/null 2>&1 ||
            [ -d "$locales/$name" ] || echo "The locale $name cannot be made here"
    done < <(python3 -B "$check" --list)
}

# fetch SUITE: the packages of the C library and its locales, in the current folder.
fetch() {
    local key=/usr/share/keyrings/debian-archive-keyring.gpg options
    has apt-get && has dpkg-deb && [ -f "$key" ] || return 1
    mkdir -p lists/partial cache/archives/partial parts
    : >status
    echo "deb [signed-by=$key] http://deb.debian.org/debian $1 main" >sources
    options=(-o Dir::Etc::sourcelist="$PWD/sources" -o Dir::Etc::sourceparts="$PWD/parts"
        -o Dir::State::lists="$PWD/lists" -o Dir::State::status="$PWD/status"
        -o Dir::Cache="$PWD/cache" -o APT::Sandbox::User=)
    apt-get "${options[@]}" update -q && apt-get "${options[@]}" download libc6 libc-bin locales
}

# inside ROOT COMMAND...: runs the command in the root, as root there.
inside() {
    if [ "$(id -u)" = 0 ]; then chroot "$@"; else unshare --map-root-user chroot "$@"; fi
}

# make_root SUITE: build/foreign/SUITE, complete or not at all.
make_root() {
    local target=$root/build/foreign/$1 work=$root/build/foreign/.$1 package name source charset
    [ ! -d "$target" ] || return 0
    rm -rf -- "$work"
    mkdir -p -- "$work/apt" "$work/root/tmp" "$work/root/usr/lib/locale" "$work/root/usr/lib64"
    (cd -- "$work/apt" && fetch "$1") >"$root/build/foreign/$1.log" 2>&1 || return 1
    for package in "$work"/apt/*.deb; do
        dpkg-deb -x "$package" "$work/root" || return 1
    done
    for name in lib lib64 bin sbin; do
        [ -e "$work/root/$name" ] || ln -s "usr/$name" "$work/root/$name"
    done
    gunzip -f -- "$work"/root/usr/share/i18n/charmaps/*.gz
    # Without this file the C library lists all of its converters anew for each program.
    inside "$work/root" /usr/sbin/iconvconfig
    while read -r name source charset; do
        inside "$work/root" /usr/bin/localedef -i "$source" -f "$charset" "$name" >/dev/null 2>&1
    done < <(python3 -B "$check" --list --root "$work/root")
    inside "$work/root" /usr/bin/locale -a >/dev/null && mv -- "$work/root" "$target" &&
        rm -rf -- "$work"
}

status=0
use_utf8
set_up locales
build release corvane-launcher corvane-launcher-any corvane-pack || exit 1
say "Locales of this machine's C library"
make_locales
python3 -B "$check" ${show[@]+"${show[@]}"} "$bin" "$locales" "$root" || status=$?
for suite in "${suites[@]}"; do
    say "The C library and the locales of Debian $suite"
    if make_root "$suite"; then
        python3 -B "$check" ${show[@]+"${show[@]}"} --root "$root/build/foreign/$suite" \
            "$bin" installed "$root" || status=$?
    else
        echo "Left out: its packages cannot be had (build/foreign/$suite.log)"
    fi
done
exit "$status"
