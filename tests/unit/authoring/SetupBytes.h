// The bytes of a setup as `pack` makes it: with digests.
#ifndef CORVANE_TESTS_UNIT_AUTHORING_SETUPBYTES_H
#define CORVANE_TESTS_UNIT_AUTHORING_SETUPBYTES_H

#include <string>
#include <string_view>
#include <vector>

#include "authoring/DigestCollector.h"
#include "support/LauncherFiles.h"

namespace test {

inline std::string setupBytes(const std::vector<StoredFile>& files, std::int32_t purpose = 0,
                              std::string_view stub = kStub) {
  authoring::DigestCollector digests(false);
  return launcherFileBytes(files, purpose, stub, &digests);
}

}  // namespace test

#endif
