#include "authoring/FileTypes.h"

#include <array>

#include "archive/LauncherFileFormat.h"
#include "authoring/NearestName.h"
#include "authoring/SafeText.h"

namespace authoring {
namespace {

constexpr std::size_t kMaxFileNameBytes = 255;  // of the file systems that matter

// In the order of the types' numbers.
constexpr std::array kTypeNames = {"instructions", "jvm",           "launchscript",
                                   "jar",          "jvm-installer", "verify",
                                   "archive",      "launcher",      "jvm-message"};
static_assert(kTypeNames.size() == FILE_TYPE_LAST + 1);

}  // namespace

const char* fileTypeName(std::int32_t type) {
  const bool known = type >= 0 && type <= FILE_TYPE_LAST;
  return known ? kTypeNames[static_cast<std::size_t>(type)] : "unknown";
}

std::optional<std::int32_t> fileTypeFromName(std::string_view name) {
  for (std::int32_t type = 0; type <= FILE_TYPE_LAST; ++type) {
    if (name == fileTypeName(type)) {
      return type;
    }
  }
  return std::nullopt;
}

std::string nearestFileType(std::string_view name) {
  return std::string(nearestName(name, {kTypeNames.begin(), kTypeNames.end()}));
}

std::string allFileTypeNames() {
  std::string names;
  for (const char* const name : kTypeNames) {
    names += names.empty() ? "" : ", ";
    names += name;
  }
  return names;
}

std::string findNameFault(std::string_view name) {
  if (name.empty()) {
    return "is empty";
  }
  if (name == "." || name == ".." || name.find('/') != std::string_view::npos) {
    return "is a path; write the plain name of a file";
  }
  if (name.find('\n') != std::string_view::npos) {
    return "holds a newline, at which a launcher stops reading it";
  }
  if (name.find('\0') != std::string_view::npos) {
    return "holds a zero byte, at which a launcher stops reading it";
  }
  if (name.size() > kMaxFileNameBytes) {
    return "is longer than 255 bytes";
  }
  if (name == "input.tag") {
    return "is the name of the file that -cv:extract writes itself";
  }
  return "";
}

std::string printable(std::string_view text) {
  std::string shown = safeText(text.substr(0, text.find('\\')));
  for (std::size_t at = text.find('\\'); at != text.npos;) {
    const std::size_t next = text.find('\\', at + 1);
    shown += "\\x5C" + safeText(text.substr(at + 1, next == text.npos ? next : next - at - 1));
    at = next;
  }
  return shown;
}

std::string quotedText(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

}  // namespace authoring
