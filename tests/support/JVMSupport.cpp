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

std::vector<std::string> toVector(const StringDeque& deque) {
  std::vector<std::string> texts;
  for (long i = 0; i < deque.size(); ++i) {
    texts.push_back(str(deque[i]));
  }
  return texts;
}

void addTags(TagFile& file, const Tags& tags) {
  for (const auto& [name, values] : tags) {
    for (const std::string& value : values) {
      file.appendTagValue(sstr(name), sstr(value));
    }
  }
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t found = text.find(from); found != std::string::npos;
       found = text.find(from, found + to.size())) {
    text.replace(found, from.size(), to);
  }
  return text;
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
