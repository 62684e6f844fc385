#!/usr/bin/env bash
# Shows the main job: packs the sample setup and runs it.
#
# Usage: scripts/demo.sh [--no-jvm]
#
# In a terminal the setup asks where to install to; without one, or with CI set, it runs unattended.
# With --no-jvm the setup requires a Java that no machine has: it shows what a user without a
# suitable Java sees. The exit status is that of the setup.
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname -- "${BASH_SOURCE[0]}")/setup.sh"

case "$*" in
"") no_jvm= ;;
--no-jvm) no_jvm=yes ;;
*) die "Usage: scripts/demo.sh [--no-jvm]" ;;
esac

use_utf8
set_up build
build release corvane-launcher-any corvane-pack verify_java8_jar textbox_setup_jar

bin=$root/build/release/bin
mkdir -p -- "$root/build/demo"
# All names below are relative to here: the setup's arguments pass through a shell, which would read
# some of the characters that the project's path may hold.
cd -- "$root/build/demo"
rm -f setup.log chosen-folder

say "Packing the sample setup (examples/sample)"
"$bin/corvane-pack" pack "$root/examples/sample/manifest.json" \
    --base "$root/build/release/java" --output textbox-setup >/dev/null
"$bin/corvane-pack" check textbox-setup
"$bin/corvane-pack" list textbox-setup

status=0
run_setup() {
    say "Running ./textbox-setup $*"
    ./textbox-setup "$@" || status=$?
}

if [ -n "$no_jvm" ]; then
    # A description that no Java matches replaces the embedded ones.
    sed 's/Java 8 or later/Java 99/; s/= [.][.][.]$/= 99/' "$root/examples/sample/java.tag" >java99.tag
    cat >no-jvm.tag <<'TAGS'
ACTION: RUN_INSTRUCTIONS
SHOW_PROGRESS: 1
SHOW_FAIL_MSG: 1
JVM: java99.tag
TAGS
    run_setup -cv:in no-jvm.tag -cv:log setup.log
elif [ -t 0 ] && [ -t 1 ] && [ -z "${CI-}" ]; then
    run_setup -cv:log setup.log -dest installed -record chosen-folder
else
    run_setup -cv:log setup.log -silent -dest installed -record chosen-folder
fi

say "The setup ended with status $status; its log is build/demo/setup.log"
if [ -s chosen-folder ]; then
    folder=$(cat chosen-folder)
    sed -n 's/^Matching JVM home is /It ran in the Java at /p' setup.log
    printf 'Installed in %s:\n' "$folder"
    (cd -- "$folder" && sed 's/^/    /' installed-files.txt && bin/textbox "Textbox works")
elif [ "$status" = 232 ]; then
    echo "It was cancelled, and nothing was installed."
elif [ -z "$no_jvm" ]; then
    echo "The log ends:"
    tail -n 12 setup.log 2>/dev/null || echo "(there is no log)"
fi
exit "$status"
