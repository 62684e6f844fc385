#!/bin/sh
# Prints the home of a Java that suits a setup.
#
# Usage: find-java.sh SETUP [OPTION]...    such as -cv:javahome DIR, -cv:tempdir DIR
#
# Status 0: found; 1: none was found; 2: the search failed, with the reason on standard error.
set -u

setup=$1
shift
scratch=$(mktemp -d) || exit 2
clean_up() { rm -rf -- "$scratch"; }
trap clean_up EXIT
for signal in HUP INT TERM; do
    trap "clean_up; trap - EXIT $signal; kill -$signal \$\$" "$signal"
done

cat >"$scratch/search.tag" <<END
ACTION: SEARCH
LOGFILE: $scratch/log
END

# Silent comes first of all: then nothing but the answer is on standard output.
"$setup" -cv:silent "$@" -cv:in "$scratch/search.tag" >"$scratch/answer"
status=$?

# A failure leaves lines that mean nothing.
if [ "$status" -ne 0 ]; then
    echo "find-java: $setup: status $status" >&2
    [ ! -e "$scratch/log" ] || sed -n 's/^ERROR: //p' "$scratch/log" >&2
    exit 2
fi
{
    read -r found
    [ "$found" = 1 ] || exit 1
    read -r home
    read -r jvm_file
} <"$scratch/answer"
rm -f -- "$jvm_file" # is ours from now on; keep it where a later VERIFY_JVM is to read it
printf '%s\n' "$home"
