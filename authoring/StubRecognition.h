// StubRecognition: which of our stubs a setup is made of.
#ifndef CORVANE_AUTHORING_STUBRECOGNITION_H
#define CORVANE_AUTHORING_STUBRECOGNITION_H

#include <optional>
#include <string>

#include "authoring/LauncherFileReader.h"

namespace authoring {

// What the stub's mark tells; see archive/StubMark.h for the values.
struct Stub {
  std::string kind;
  std::string version;
  std::string encoding;
  std::string machine;
};

// Looks for the mark in front of the embedded files. Nothing: the program is none of ours, or from
// before the marks.
[[nodiscard]] std::optional<Stub> recognizeStub(const LauncherFile& launcher);

// The mark in a stub's bytes.
[[nodiscard]] std::optional<Stub> findStubMark(const std::string& bytes);

// As pages and messages call it: "corvane-launcher-any 1.0 (x86_64)".
std::string describeStub(const Stub& stub);

}  // namespace authoring

#endif
