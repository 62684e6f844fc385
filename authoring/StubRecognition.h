// StubRecognition: finds out which of our stubs a setup was made from.
#ifndef CORVANE_AUTHORING_STUBRECOGNITION_H
#define CORVANE_AUTHORING_STUBRECOGNITION_H

#include <optional>
#include <string>

#include "authoring/LauncherFileReader.h"

namespace authoring {

// The fields of the stub's mark; see archive/StubMark.h for the values.
struct Stub {
  std::string kind;
  std::string version;
  std::string encoding;
  std::string machine;
};

// Looks for the mark before the embedded files. Nothing when the program is not ours, or older than
// the marks.
[[nodiscard]] std::optional<Stub> recognizeStub(const LauncherFile& launcher);

// Throws AuthoringError, with what the file looks like, when it carries no files and is no stub of
// ours either.
void requireLauncher(const LauncherFile& launcher, const std::string& path);

// The mark in a stub's bytes.
[[nodiscard]] std::optional<Stub> findStubMark(const std::string& bytes);

// The name for pages and messages: "corvane-launcher-any 1.0 (x86_64)".
std::string describeStub(const Stub& stub);

}  // namespace authoring

#endif
