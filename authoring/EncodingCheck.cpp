#include "authoring/EncodingCheck.h"

#include <string>
#include <string_view>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileLook.h"
#include "authoring/FileTypes.h"
#include "authoring/SafeText.h"
#include "authoring/TextPatterns.h"

namespace authoring {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Marks[] = {"\xFF\xFE", "\xFE\xFF"};

struct LookalikeRow {
  std::string_view bytes;
  const char* name;
  const char* meant;
};
constexpr LookalikeRow kLookalikes[] = {
    {"\xC2\xA0", "a no-break space (U+00A0)", "an ordinary blank"},
    {"\xE2\x80\xAF", "a narrow no-break space (U+202F)", "an ordinary blank"},
    {"\xE2\x80\x8B", "a zero width space (U+200B)", "nothing in its place"},
    {kByteOrderMark, "a byte order mark (U+FEFF)", "nothing in its place"},
    {"\xE2\x80\x9C", "a typographic quote (U+201C)", "a double quote"},
    {"\xE2\x80\x9D", "a typographic quote (U+201D)", "a double quote"},
    {"\xE2\x80\x9E", "a typographic quote (U+201E)", "a double quote"},
    {"\xE2\x80\x93", "a dash (U+2013)", "a hyphen"},
    {"\xE2\x80\x94", "a dash (U+2014)", "a hyphen"},
    {"\xE2\x80\xA6", "an ellipsis (U+2026)", "three full stops"},
};

// What stands between quotes may be a text for people, such as a title.
std::size_t findOutsideQuotes(std::string_view line, std::string_view bytes) {
  bool isInside = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (!isInside && line.substr(i).starts_with(bytes)) {
      return i;
    }
    isInside = isInside != (line[i] == '"');
  }
  return line.npos;
}

class EncodingCheck {
 public:
  EncodingCheck(const SetupFile& file, TagTable table, Findings& findings)
      : m_file(file), m_table(table), m_findings(findings) {}

  void run() {
    const SourceLine& first =
        m_file.sources.tags().empty() ? m_file.sources.lastLine() : m_file.sources.tags()[0].head;
    if (isOtherEncoding(first) || isOtherFormat(first)) {
      return;
    }
    checkMark(first);
    checkLineEnds();
    for (const TagSource& tag : m_file.sources.tags()) {
      checkTag(tag);
    }
  }

 private:
  Place at(const SourceLine& line) const { return {m_file.label, line.number}; }

  bool isOtherEncoding(const SourceLine& first) {
    const bool isMarked =
        first.text.starts_with(kUtf16Marks[0]) || first.text.starts_with(kUtf16Marks[1]);
    const std::size_t zero = first.text.find('\0');
    if (!isMarked && zero > 1) {
      return false;
    }
    m_findings.error({m_file.label, 0}, "the file is UTF-16",
                     "the launcher finds no tag in it that it knows", "save it as UTF-8");
    return true;
  }

  // A jar that is listed as a jvm file, say.
  bool isOtherFormat(const SourceLine& first) {
    const std::string format = isText(first.text) ? "" : formatOf(first.text);
    if (!format.empty()) {
      m_findings.error({m_file.label, 0}, "the file is no tag file; it looks like " + format,
                       "the launcher finds no tag in it that it knows",
                       "correct its type in the manifest");
    }
    return !format.empty();
  }

  void checkMark(const SourceLine& first) {
    if (first.text.starts_with(kByteOrderMark)) {
      m_findings.error(at(first), "the file begins with a byte order mark",
                       "the launcher takes it as a part of the first tag's name, which it then "
                       "does not know",
                       "save the file as UTF-8 without a mark");
    }
  }

  // Carriage returns are dropped wherever they stand: with nothing else the file is one line.
  void checkLineEnds() {
    const bool isOneLine =
        m_file.sources.tags().size() == 1 && m_file.sources.lastLine().number == 1;
    if (!isOneLine) {
      return;
    }
    const SourceLine& line = m_file.sources.tags()[0].head;
    for (const TagRow& row : m_table) {
      const std::size_t name = line.text.find(std::string(row.name) + ":");
      if (name != std::string::npos && name > 0) {
        m_findings.error(at(line), "the whole file is one line",
                         "a newline ends a line; carriage returns are dropped",
                         "save the file with the line ends of Unix");
        return;
      }
    }
  }

  // Texts for people may hold any letter, and so may tags of the author's own.
  void checkTag(const TagSource& tag) {
    const TagRow* const row = findTag(m_table, tag.name);
    const bool isForPeople =
        row == nullptr || m_file.type == FILE_TYPE_JVM_MESSAGE || row->kind == TagKind::kShownText;
    for (const SourceLine& line : tag.values) {
      if (m_file.type == FILE_TYPE_JVM_MESSAGE) {
        checkMessage(line);
      } else if (!isForPeople) {
        checkLine(line);
      }
    }
  }

  // It is shown as it stands, unlike DESC.
  void checkMessage(const SourceLine& line) {
    const std::size_t escape = line.text.find("\\u");
    if (!isUtf8(line.text)) {
      m_findings.warning(at(line), "the message is not UTF-8",
                         "it is shown as it stands, and few terminals read anything else",
                         "save the file as UTF-8");
    } else if (escape != std::string::npos && isHex(line.text.substr(escape + 2, 4))) {
      m_findings.warning(at(line),
                         "the message holds the escape " + quotedText(line.text.substr(escape, 6)),
                         "it is shown as it stands", "write the letter itself");
    }
  }

  void checkLine(const SourceLine& line) {
    if (line.text.find('\0') != std::string::npos) {
      m_findings.error(at(line), "the line holds a zero byte", "the value ends there",
                       "delete the byte");
    }
    const bool isComment = line.text.starts_with("// ");
    for (const LookalikeRow& row : kLookalikes) {
      const std::size_t found = findOutsideQuotes(line.text, row.bytes);
      const bool isMark = found == 0 && row.bytes == kByteOrderMark;  // of the file
      if (found != std::string::npos && !isMark && !isComment) {
        report(line, row);
      }
    }
  }

  void report(const SourceLine& line, const LookalikeRow& row) {
    m_findings.warning(at(line), std::string("the line holds ") + row.name,
                       "to the launcher it is a letter like any other",
                       std::string("write ") + row.meant);
  }

  const SetupFile& m_file;
  const TagTable m_table;
  Findings& m_findings;
};

}  // namespace

void checkEncoding(const SetupFile& file, TagTable table, Findings& findings) {
  EncodingCheck(file, table, findings).run();
}

}  // namespace authoring
