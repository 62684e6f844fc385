#include "authoring/LogLines.h"

namespace authoring {
namespace {

constexpr std::size_t kLongestLine = std::size_t{64} << 10;

}  // namespace

bool LogLines::next(std::string& line) {
  line.clear();
  int byte = std::getc(m_file);
  const bool isLine = byte != EOF;
  for (; byte != EOF && byte != '\n'; byte = std::getc(m_file)) {
    if (line.size() < kLongestLine) {
      line += static_cast<char>(byte);
    }
  }
  m_hasEnd = byte == '\n';
  if (!line.empty() && line.back() == '\r') {
    line.pop_back();
  }
  return isLine;
}

}  // namespace authoring
