// Any bytes as a tag file, and a stretch of them: what is written reads back equal.
#include <algorithm>

#include "fuzz/Fuzzing.h"
#include "tagfile/TagFile.h"
#include "util/LauncherException.h"

namespace {

// The document as it is written. Without the part from the first fault on, when there is one.
std::string rewritten(std::string_view text, std::int32_t start, std::int32_t length) {
  TagFile document;
  const FilePtr file = fuzz::openBytes(text);
  try {
    document.load(file.get(), "fuzz", start, length);
    fuzz::require(document.isLoaded());
  } catch (const LauncherException& e) {
    fuzz::require(!document.isLoaded() && !e.getMessage().empty());
  }
  return std::string(document.text().view());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::toText(data, size);
  const std::string once = rewritten(text, 0, -1);
  if (text.find('\0') == text.npos) {  // a zero byte ends the value that is written
    fuzz::require(once == rewritten(once, 0, -1));
  }
  const std::int32_t start = size > 1 ? data[0] : 0;
  const std::int32_t length = size > 1 ? data[1] : 0;
  rewritten(text, start, length);
  return 0;
}
