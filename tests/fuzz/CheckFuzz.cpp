// Texts of a setup under `check`. Any three texts are read, and each finding says something of a
// line that there is.
#include <algorithm>
#include <string>

#include "archive/LauncherFileFormat.h"
#include "authoring/SetupCheck.h"
#include "fuzz/Fuzzing.h"
#include "util/LauncherException.h"

namespace {

constexpr std::size_t kLongestText = 4096;
constexpr char kSeparator = '\f';  // of the three texts

void addFile(authoring::Setup& setup, std::int32_t type, std::string_view text) {
  authoring::SetupFile file;
  file.type = type;
  file.id = static_cast<std::int32_t>(setup.files.size());
  file.name = file.label = std::to_string(file.id);
  file.tagFile = std::make_unique<TagFile>();
  const FilePtr stream = fuzz::openBytes(text);
  try {
    file.tagFile->load(stream.get(), "text", 0, -1, &file.sources);
  } catch (const LauncherException&) {
    file.tagFile = nullptr;
  }
  setup.files.push_back(std::move(file));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text = fuzz::toText(data, std::min(size, kLongestText));
  authoring::Setup setup;
  for (const std::int32_t type : {FILE_TYPE_INSTRUCTIONS, FILE_TYPE_LAUNCH_SCRIPT, FILE_TYPE_JVM}) {
    const std::size_t end = std::min(text.find(kSeparator), text.size());
    addFile(setup, type, text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  const authoring::Findings findings = checkSetup(setup);
  const auto lines = std::count(data, data + size, '\n') + 1;
  for (const authoring::Finding& finding : findings.all()) {
    fuzz::require(!finding.what.empty() && finding.place.line <= lines);
  }
  return 0;
}
