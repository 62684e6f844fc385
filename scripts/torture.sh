#!/usr/bin/env bash
# Tortures whole runs of the launcher (tests/torture): each system call that can fail is made to
# fail, signals come at any moment, file systems are small, closed or dead. After each case there is
# no crash, no hang, a true status, a text, an empty temporary folder, and no process left. A failure
# is one line, which also says how to repeat it.
#
# Usage: scripts/torture.sh [--short] [--only fault|kill|disk [--case NAME]] [--seed N] [--help]
#
# The whole takes some minutes. What the machine does not permit (ptrace, a mount namespace) is
# skipped with a message. Failures that are known stand in tests/torture/expected.txt.
set -uo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname -- "${BASH_SOURCE[0]}")/setup.sh"

use_utf8
set_up build
if [ "$(uname -s)" != Linux ]; then
    say "No torture: system calls are watched on Linux only"
    exit 0
fi
build release corvane-launcher torture || exit 1
say "Torture"
exec "$root/build/release/bin/torture" "$@" </dev/null
