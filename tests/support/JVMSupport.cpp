#include "support/JVMSupport.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "launcher/Log.h"
#include "support/TestAccess.h"

namespace test {
namespace {

constexpr std::string_view kLogSeparator = "------------------\n";

}  // namespace

void addTags(TagFile& file, const Tags& tags) {
  for (const auto& [name, values] : tags) {
    for (const std::string& value : values) {
      file.appendTagValue(sstr(name), sstr(value));
    }
  }
}

std::vector<std::string> linesBeginning(const std::string& log,
                                        const std::vector<std::string>& beginnings) {
  std::vector<std::string> lines;
  std::istringstream stream(log);
  for (std::string line; std::getline(stream, line);) {
    const auto begins = [&](const std::string& beginning) { return line.starts_with(beginning); };
    if (std::any_of(beginnings.begin(), beginnings.end(), begins)) {
      lines.push_back(line);
    }
  }
  return lines;
}

LogCapture::LogCapture() {
  setLogFileName(sstr(m_dir / "log"));
}

LogCapture::~LogCapture() {
  LauncherTestAccess::resetState();
}

std::string LogCapture::take() {
  const std::string path = m_dir / "log";
  if (!std::filesystem::exists(path)) {
    return {};
  }
  std::string log = readFile(path);
  std::filesystem::remove(path);
  return log.starts_with(kLogSeparator) ? log.substr(kLogSeparator.size()) : log;
}

}  // namespace test
