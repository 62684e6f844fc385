#!/usr/bin/env bash
# Unpacks the .deb of a build into an empty root and goes an author's way there: asks the installed
# program for its version, follows the installed tutorial, builds, packs and checks the installed
# sample with the installed class, and runs it. With a build of the stubs for another machine it
# unpacks their .deb, too, and packs the sample with them. Status 77: there are no tools for it.
#
# Usage: tests/package/package_test.sh BUILD_DIR [BUILD_DIR_OF_STUBS]
set -euo pipefail

build=$1 stubs_build=${2-}
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

# make_package BUILD NAME: NAME.deb, and NAME.files with the paths in it.
make_package() {
    run "making the package $2" cpack --config "$1/CPackConfig.cmake" -G DEB -B "$scratch/$2"
    mv -- "$scratch/$2"/*.deb "$scratch/$2.deb"
    dpkg-deb --fsys-tarfile "$scratch/$2.deb" | tar -t | grep -v '/$' | sort >"$scratch/$2.files"
}

mkdir "$here"
make_package "$build" corvane-pack
run "reading its control file" dpkg-deb --field "$scratch/corvane-pack.deb"
wants "Package: corvane-pack"
wants "libc6"
run "unpacking it" dpkg-deb -x "$scratch/corvane-pack.deb" "$here"

pack=$here/usr/bin/corvane-pack
doc=$here/usr/share/doc/corvane-pack
run "asking for the version" "$pack" --version
for file in copyright README.md CHANGELOG.md docs/licences.md docs/authoring.md \
    examples/sample/manifest.json; do
    run "looking for $file" test -s "$doc/$file"
done
for page in "$tests"/../docs/man/*.in; do
    name=$(basename "$page" .in)
    run "looking for $name" test -s "$here/usr/share/man/man${name##*.}/$name"
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

if [ -n "$stubs_build" ]; then
    make_package "$stubs_build" stubs
    run "looking for files that are in both packages" \
        comm -12 "$scratch/corvane-pack.files" "$scratch/stubs.files"
    [ ! -s "$scratch/output" ] || failed
    run "unpacking the stubs" dpkg-deb -x "$scratch/stubs.deb" "$here"
    machine=$(basename "$(dirname "$(echo "$here"/usr/libexec/corvane/*/corvane-launcher-any)")")
    run "asking for the version with them" "$pack" --version
    wants "$machine"
    run "packing for $machine" "$pack" pack manifest.json --machine "$machine" --output other
    run "verifying that" "$pack" verify other
    run "listing that" "$pack" list other
    wants "$machine"
fi
echo "The package works."
