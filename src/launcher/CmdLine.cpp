#include "launcher/CmdLine.h"

#include "tagfile/Quotes.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr char kBackslash = '\\';
constexpr std::size_t npos = SString::npos;

// Takes the backslash at `pos` and the byte after it; a backslash that ends the line is dropped.
void appendEscape(const SString& line, std::size_t& pos, SString& arg) {
  ++pos;
  if (pos < line.size()) {
    if (line[pos] != kQuote) {
      arg += kBackslash;
    }
    arg += line[pos++];
  }
}

}  // namespace

std::int32_t CmdLine::parse(const SString& line) {
  // QUIRK(parse-appends): the count begins anew, but the arguments are appended to those of an
  // earlier parse.
  m_optionCount = 0;
  std::size_t pos = line.find_first_not_of(kBlanks);
  while (pos != npos) {
    SString arg;
    getNextArg(line, pos, m_optionCount == 0, arg, pos);
    if (!arg.empty()) {
      m_options.push_back(arg);
      ++m_optionCount;
    }
    pos = line.find_first_not_of(kBlanks, pos);
  }
  return 1;
}

std::int32_t CmdLine::getNextArg(const SString& line, std::size_t pos, bool isFirst, SString& arg,
                                 std::size_t& next) const {
  arg.clear();
  pos = line.find_first_not_of(kBlanks, pos);
  const bool inQuotes = line[pos] == kQuote;
  if (inQuotes) {
    ++pos;
  }
  while (pos < line.size()) {
    const char c = line[pos];
    if (c == kBackslash && !isFirst) {
      appendEscape(line, pos, arg);
    } else if (c == kQuote && inQuotes) {
      ++pos;
      break;
    } else if (c == kQuote) {
      appendQuotedSection(line, pos, isFirst, arg);
    } else if (isWhitespace(c) && !inQuotes) {
      break;
    } else {
      arg += c;
      ++pos;
    }
  }
  next = pos;
  return 1;
}

void CmdLine::appendQuotedSection(const SString& line, std::size_t& pos, bool isFirst,
                                  SString& arg) const {
  SString section;
  getNextArg(line, pos, isFirst, section, pos);
  arg += section;
  if (pos >= line.size()) {
    pos = npos;
  }
}

const char* CmdLine::getOption(int index) const {
  return index < 0 || index >= m_optionCount ? nullptr : m_options.at(index).c_str();
}
