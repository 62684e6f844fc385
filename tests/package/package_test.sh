#!/usr/bin/env bash
# Unpacks the .deb of a build into an empty root and goes an author's way there: asks the installed
# program for its version, follows the installed tutorial, builds, packs and checks the installed
# sample with the installed class, and runs it. Status 77: there are no tools for it.
#
# Usage: tests/package/package_test.sh BUILD_DIR
set -euo pipefail

build=$1
tests=$(cd -- "$(dirname -- "$0")/.." && pwd)
for tool in cpack dpkg-deb dpkg-shlibdeps javac jar jlink python3; do
    command -v "$tool" >/dev/null || {
        echo "Skipped: there is no $tool"
        exit 77
    }
done

scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT
here=$scratch/root
step=cpack
failed() {
    echo "FAILED: $step"
    cat "$scratch/output"
    exit 1
}
# run WHAT COMMAND...: a step of the way, whose output is shown when it fails.
run() {
    step=$1
    shift
    "$@" >"$scratch/output" 2>&1 || failed
}
# wants TEXT: in the output of the last step.
wants() { grep -qF -- "$1" "$scratch/output" || failed; }

run "making the package" cpack --config "$build/CPackConfig.cmake" -G DEB -B "$scratch/packages"
deb=$(echo "$scratch"/packages/corvane-pack_*.deb)
run "reading its control file" dpkg-deb --field "$deb"
wants "Package: corvane-pack"
wants "libc6"
mkdir "$here"
run "unpacking it" dpkg-deb -x "$deb" "$here"

pack=$here/usr/bin/corvane-pack
doc=$here/usr/share/doc/corvane-pack
run "asking for the version" "$pack" --version
for file in copyright README.md CHANGELOG.md docs/licences.md docs/authoring.md \
    examples/sample/manifest.json; do
    run "looking for $file" test -s "$doc/$file"
done
for page in man1/corvane-pack.1 man1/corvane-launcher.1 man5/corvane-launcher-files.5; do
    run "looking for $page" test -s "$here/usr/share/man/$page"
done

run "following the links of the pages" python3 -B "$tests/../tools/check_links.py" "$doc"
run "following the tutorial" \
    python3 -B "$tests/tutorial_test.py" "$pack" "$doc/docs/tutorial.md"

cp -R -- "$doc/examples/sample" "$scratch/setup"
cd -- "$scratch/setup"
run "compiling the sample" javac -Xlint:-options --release 8 -d classes wizard/textbox/*.java
run "making its jar" jar --create --file textbox-setup.jar -C classes . -C . payload
run "packing it" "$pack" pack manifest.json --output setup
run "checking it" "$pack" check setup
wants "corvane-launcher-any"
run "running it" env CI=true ./setup -silent -dest "$scratch/installed"
run "looking at what it installed" test -s "$scratch/installed/README.txt"
echo "The package works."
