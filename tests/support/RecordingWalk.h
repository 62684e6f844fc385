// A walk for tests.
#ifndef CORVANE_TESTS_SUPPORT_RECORDINGWALK_H
#define CORVANE_TESTS_SUPPORT_RECORDINGWALK_H

#include <string>
#include <vector>

#include "platform/FileNavigator.h"
#include "support/TestAccess.h"

namespace test {

// Records what the walk offers, and cancels or stops at one file when a test wants it.
class RecordingWalk : public FileNavigator {
 public:
  explicit RecordingWalk(bool isCancellable = true) : FileNavigator(isCancellable) {}

  bool processFile(const SString& path) override {
    files.emplace_back(path.c_str());
    const bool isAt = static_cast<long>(files.size()) == actsAt;
    if (isAt && cancels) {
      PlatformTestAccess::setCanceled(true);
    }
    return isAt && stops;
  }
  bool skipDirectory(const SString& path) override {
    visited.emplace_back(path.c_str());
    return path == skipped.c_str();
  }
  bool isKnownDirectory(const SString& path) const override { return path == known.c_str(); }

  std::string skipped;
  std::string known;  // a directory that the walk must not look at to know it
  long actsAt = 0;
  bool cancels = false;
  bool stops = false;
  std::vector<std::string> files;
  std::vector<std::string> visited;  // directories, in the order of the walk
};

}  // namespace test

#endif
