#!/usr/bin/env bash
# Looks at the sources without running them. Prints each finding; the exit status is 0 when there is
# none, 1 when there is one, and 77 when a lint was skipped (it says why).
#
# Usage: scripts/lint.sh [format|tidy|shell]...      (default: all three)
#
#   format   clang-format, with .clang-format
#   tidy     clang-tidy, with .clang-tidy, in src, authoring and tools
#   shell    shellcheck
set -uo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname -- "${BASH_SOURCE[0]}")/setup.sh"
cd -- "$root" || exit 1

# Releases of clang-format differ in details; the sources are formatted by this one.
format_release=14

skip() {
    echo "Skipped: $*"
    return 77
}

lint_format() {
    local release
    has clang-format || skip "there is no clang-format" || return
    release=$(clang-format --version | sed -n 's/.*version \([0-9][0-9]*\).*/\1/p')
    [ "$release" = "$format_release" ] ||
        skip "the format is that of clang-format $format_release, and this is $release" || return
    find src authoring bench tests tools '(' -name '*.cpp' -o -name '*.h' ')' -print0 |
        xargs -0 clang-format --dry-run -Werror
}

# clang-tidy counts on standard error what it found in system headers but does not report.
lint_tidy() {
    local log=build/lint-configure.log
    has clang-tidy || skip "there is no clang-tidy" || return
    mkdir -p build
    if ! configure release >"$log" 2>&1; then
        cat "$log"
        return 1
    fi
    find src authoring tools -name '*.cpp' -print0 |
        xargs -0 -n 1 -P "$(getconf _NPROCESSORS_ONLN)" clang-tidy -p build/release --quiet 2>&1 |
        sed '/^[0-9]* warnings\{0,1\} generated\.$/d'
}

lint_shell() {
    has shellcheck || skip "there is no shellcheck" || return
    shellcheck --external-sources scripts/*.sh tests/package/*.sh .ci/run \
        examples/sample/payload/uninstall examples/sample/payload/bin/*
}

if [ $# = 0 ]; then
    set -- format tidy shell
fi
found=0 skipped=0
for lint in "$@"; do
    status=0
    case $lint in
    format) lint_format || status=$? ;;
    tidy) lint_tidy || status=$? ;;
    shell) lint_shell || status=$? ;;
    *) die "There is no lint '$lint'. Usage: scripts/lint.sh [format|tidy|shell]..." ;;
    esac
    case $status in
    0) ;;
    77) skipped=1 ;;
    *) found=1 ;;
    esac
done
[ "$found" = 0 ] || exit 1
[ "$skipped" = 0 ] || exit 77
