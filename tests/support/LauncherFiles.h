// Launcher files for tests, built by the writer that the authoring tool uses.
#ifndef CORVANE_TESTS_SUPPORT_LAUNCHERFILES_H
#define CORVANE_TESTS_SUPPORT_LAUNCHERFILES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "archive/LauncherFileFormat.h"
#include "authoring/LauncherFileWriter.h"

namespace test {

struct StoredFile {
  std::int32_t type;  // LauncherFileType
  std::int32_t id;
  std::string name;
  std::string bytes;
  std::optional<authoring::DecompressedSize> decompressed = std::nullopt;
};

inline constexpr std::string_view kStub = "#!/bin/sh\n";

// The bytes of a launcher file that holds these files in this order.
std::string launcherFileBytes(const std::vector<StoredFile>& files, std::int32_t purpose = 0,
                              std::string_view stub = kStub,
                              authoring::WriteObserver* observer = nullptr);
// The same with an index of the caller's own making (a count and entries, right or wrong), which
// stands directly behind the stub and the `stored` bytes.
std::string launcherFileBytes(std::string_view stored, std::string_view index);
// Where the stored bytes of the second form begin.
inline constexpr std::int32_t kStoredOffset = static_cast<std::int32_t>(kStub.size());

}  // namespace test

#endif
