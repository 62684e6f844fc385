// Installation: what was installed with this program, or built beside it.
//
//   PREFIX/bin/corvane-pack   PREFIX/libexec/corvane/: the stubs   PREFIX/share/corvane/:
//   verify.jar, verify-java8.jar
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

// All stubs, the default one first.
std::vector<std::string> findStubs();

// Where verify.jar is looked for when the author has none of his own.
std::vector<std::string> verifyFolders();

// For --version: this program, and each stub with its place, a line each, the last one not ended.
std::string describeInstallation();

}  // namespace authoring

#endif
