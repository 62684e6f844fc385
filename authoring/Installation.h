// Installation: what was installed with this program, or built beside it.
//
//   PREFIX/bin/corvane-pack   PREFIX/libexec/corvane/: the stubs   PREFIX/share/corvane/:
//   verify.jar, verify-java8.jar
//
// Packages with the stubs for another machine put them into a folder of its name beside our own:
// PREFIX/libexec/corvane/aarch64/.
//
// In a build's folder the stubs stand beside the program, and verify.jar in ../java.
#ifndef CORVANE_AUTHORING_INSTALLATION_H
#define CORVANE_AUTHORING_INSTALLATION_H

#include <string>
#include <vector>

namespace authoring {

// The stub for packing when none is named: the one for any terminal. Throws AuthoringError when
// there is none.
std::string findDefaultStub();

// All stubs: the default one first, those for other machines behind our own, by their folders'
// names.
std::vector<std::string> findStubs();

// The stub for any terminal on that machine, as marks name it ("x86_64"; "amd64" and "arm64" count,
// too). Throws AuthoringError, with the machines that there are stubs for, when there is none.
std::string findStubFor(const std::string& machine);

// Where verify.jar is looked for when the author has none of his own.
std::vector<std::string> verifyFolders();

// For --version: this program, and each stub with its place, a line each, the last one not ended.
std::string describeInstallation();

}  // namespace authoring

#endif
