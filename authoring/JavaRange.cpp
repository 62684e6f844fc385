#include "authoring/JavaRange.h"

#include <cctype>
#include <string_view>

#include "authoring/AuthoringError.h"

namespace authoring {
namespace {

constexpr int kHighest = 999;
constexpr int kMostVersions = 40;  // a jvm file for each
constexpr std::string_view kTo = "..";

// 0: no such version.
int parseVersion(std::string_view text) {
  int version = 0;
  for (const char digit : text) {
    if (!std::isdigit(static_cast<unsigned char>(digit)) || version > kHighest) {
      return 0;
    }
    version = version * 10 + (digit - '0');
  }
  return version > kHighest ? 0 : version;
}

[[noreturn]] void fail(const std::string& text, const std::string& reason) {
  throw AuthoringError("\"" + text + "\" " + reason);
}

JavaRange split(std::string_view text) {
  if (text.ends_with('+')) {
    return {parseVersion(text.substr(0, text.size() - 1)), JavaRange::kNoEnd};
  }
  const std::size_t to = text.find(kTo);
  if (to == text.npos) {
    const int version = parseVersion(text);
    return {version, version};
  }
  // An end that cannot be read must not pass for an open one.
  const int last = parseVersion(text.substr(to + kTo.size()));
  return {last == 0 ? 0 : parseVersion(text.substr(0, to)), last};
}

}  // namespace

std::vector<int> JavaRange::versions() const {
  std::vector<int> versions;
  for (int version = last; version >= first; --version) {
    versions.push_back(version);
  }
  return versions;
}

std::string JavaRange::inWords() const {
  const std::string words = "Java " + std::to_string(first);
  if (isOpen()) {
    return words + " or later";
  }
  return first == last ? words : words + " to " + std::to_string(last);
}

JavaRange parseJavaRange(const std::string& text) {
  const JavaRange range = split(text);
  if (range.first == 0) {
    fail(text, "names no Java; write 17+ for 17 and later, 8..17 for all of these, or 21");
  }
  if (range.first < JavaRange::kOldest) {
    fail(text, "begins too early; the oldest Java that can be asked for is 8");
  }
  if (!range.isOpen() && range.last < range.first) {
    fail(text, "ends before it begins; write the older Java first");
  }
  if (range.last - range.first >= kMostVersions) {
    fail(text, "is a jvm file for each of too many Javas; write " + std::to_string(range.first) +
                   "+ for all from the first on");
  }
  return range;
}

std::string specificationVersion(int version) {
  return version == 8 ? "1.8" : std::to_string(version);
}

}  // namespace authoring
