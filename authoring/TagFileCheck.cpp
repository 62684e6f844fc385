#include "authoring/TagFileCheck.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "authoring/FileTypes.h"
#include "authoring/TextPatterns.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr std::string_view kBlockEnd = "/:";
constexpr std::string_view kStrayEnd = "/";  // the name of the tag that "/:" begins outside a block
// What authors write for the end of a block.
constexpr std::string_view kNearlyBlockEnds[] = {":/", "/;", "/ :", "\\:", "//:", "/.", ": /"};

std::string lineNumber(std::int32_t number) {
  return "line " + std::to_string(number);
}

// The first colon of the line ends it.
bool isBlock(const TagSource& tag) {
  return tag.head.text.find(':') + 1 == tag.head.text.size();
}

// The name of the tag that the line would begin outside a block; empty when it would begin none.
std::string_view tagNameIn(std::string_view line) {
  const std::size_t colon = line.find(':');
  return colon == std::string_view::npos ? "" : withoutBlanks(line.substr(0, colon));
}

// The value's part of a line: behind the colon of a tag's own line, or all of it.
std::string_view valueIn(const TagSource& tag, const SourceLine& line) {
  const std::string_view text = line.text;
  return line.number == tag.head.number ? withoutBlanks(text.substr(text.find(':') + 1)) : text;
}

// True for a line that its author takes for the end of the block.
bool isNearlyEnd(const SourceLine& value) {
  const bool isLonger = value.text.starts_with(kBlockEnd) && value.text != kBlockEnd;
  return isLonger || std::find(std::begin(kNearlyBlockEnds), std::end(kNearlyBlockEnds),
                               value.text) != std::end(kNearlyBlockEnds);
}

// True for a line of a block that would begin a tag if the block had ended in front of it.
bool isSwallowed(TagTable table, const TagSource& tag, const SourceLine& value) {
  const TagRow* const row = findTag(table, tag.name);
  const std::string_view name = tagNameIn(value.text);
  const bool isTagHere = name == tag.name || findTag(table, name) != nullptr;
  const bool isText = row == nullptr || row->kind == TagKind::kText ||
                      row->kind == TagKind::kStatement || row->kind == TagKind::kShownText;
  return !name.empty() && (isTagHere || (!isText && looksLikeATag(name)));
}

class TagFileCheck {
 public:
  TagFileCheck(const SetupFile& file, TagTable table, Findings& findings)
      : m_file(file), m_table(table), m_findings(findings) {}

  void run() {
    for (const TagSource& tag : m_file.sources.tags()) {
      checkName(tag);
      checkTwice(tag);
      for (const SourceLine& value : tag.values) {
        checkQuotes(tag, value);
      }
      const bool isMeantAsTag = tag.name != kStrayEnd && !looksLikeAComment(tag.name);
      if (isBlock(tag) && isMeantAsTag) {
        checkBlock(tag);
      }
    }
  }

 private:
  Place at(const SourceLine& line) const { return {m_file.label, line.number}; }

  // --- Names ---

  void checkName(const TagSource& tag) {
    if (looksLikeAComment(tag.name)) {
      reportComment(tag);
    } else if (tag.name == kStrayEnd) {
      reportStrayEnd(tag);
    } else if (tag.name.empty()) {
      m_findings.error(at(tag.head), quotedText(tag.head.text) + " stands outside a block",
                       "it is read as a tag without a name, which nobody reads",
                       "put it in front of the /: of the block that it belongs to");
    } else {
      checkEquals(tag);
    }
  }

  std::string swallowed(const TagSource& tag) const {
    return tag.end == 0 ? "swallows all lines behind it"
                        : "swallows all lines up to " + lineNumber(tag.end);
  }

  void reportComment(const TagSource& tag) {
    const std::string what = quotedText(tag.head.text) + " is no comment; tag files have none";
    if (isBlock(tag)) {
      m_findings.error(at(tag.head), what, "it begins a block that " + swallowed(tag),
                       "delete the line");
    } else {
      m_findings.warning(at(tag.head), what, "it is read as a tag of its own", "delete the line");
    }
  }

  void reportStrayEnd(const TagSource& tag) {
    m_findings.error(at(tag.head), "this /: ends no block",
                     "it begins a block of the name / that " + swallowed(tag), "delete the line");
  }

  // "COMMAND = java -Da:b"
  void checkEquals(const TagSource& tag) {
    const std::string_view name = tag.name;
    const std::size_t equals = name.find('=');
    const std::string_view front = withoutBlanks(name.substr(0, equals));
    if (equals != std::string_view::npos && findTag(m_table, front) != nullptr) {
      const std::string known(front);
      m_findings.error(at(tag.head), "the name of the tag " + known + " ends with =",
                       "it ends at the first colon, so that there is no tag " + known,
                       "write " + known + ": and the value");
    }
  }

  void checkTwice(const TagSource& tag) {
    const TagSource* const last = m_file.sources.find(tag.name);
    if (last != &tag && !tag.name.empty() && !looksLikeAComment(tag.name)) {
      m_findings.warning(at(tag.head),
                         tag.name + " is given again in " + lineNumber(last->head.number),
                         "only the last one counts, and what stands here is lost",
                         "write it once, several values as a block");
    }
  }

  // --- Values ---

  void checkQuotes(const TagSource& tag, const SourceLine& line) {
    const std::string lost = textBehindQuote(valueIn(tag, line));
    if (lost.empty()) {
      return;
    }
    const std::string what = "text behind the closing quote is lost: " + quotedText(lost);
    const std::string why = "a value that begins with a quote ends at the next single one";
    const TagRow* const row = findTag(m_table, tag.name);
    if (row != nullptr && row->kind == TagKind::kTemplate) {
      m_findings.error(at(line), what, why,
                       "let the value begin with something else, such as exec, or put all of it "
                       "into quotes and double those inside");
    } else if (!looksLikeAComment(lost)) {
      m_findings.warning(at(line), what, why,
                         "put all of the value into quotes and double those inside");
    }
  }

  // --- Blocks ---

  void checkBlock(const TagSource& tag) {
    const TagRow* const row = findTag(m_table, tag.name);
    for (const SourceLine& value : tag.values) {
      if (isSwallowed(m_table, tag, value)) {
        reportSwallowed(tag, value);
        return;
      }
      checkNearlyEnd(value);
      checkComment(row, value);
    }
  }

  void reportSwallowed(const TagSource& tag, const SourceLine& value) {
    const std::string name(tagNameIn(value.text));
    m_findings.error(at(value),
                     name + " stands in the block of " + tag.name + ", which begins in " +
                         lineNumber(tag.head.number),
                     "the line is a value of that block and sets no tag",
                     "end the block with a line /: in front of it");
  }

  void checkNearlyEnd(const SourceLine& value) {
    if (isNearlyEnd(value)) {
      m_findings.error(at(value), quotedText(value.text) + " does not end the block",
                       "it is a value of the block", "write /: alone on its line");
    }
  }

  // A script has comments of its own, and a property without = is reported as such.
  void checkComment(const TagRow* row, const SourceLine& value) {
    const bool isList =
        row != nullptr && (row->kind == TagKind::kPath || row->kind == TagKind::kVariable ||
                           row->kind == TagKind::kAssignment);
    const bool isPath = value.text.starts_with("//") && !value.text.starts_with("// ");
    if (isList && !isPath && looksLikeAComment(value.text)) {
      m_findings.warning(at(value), quotedText(value.text) + " is no comment; blocks have none",
                         "it is a value of the block", "delete the line");
    }
  }

  const SetupFile& m_file;
  const TagTable m_table;
  Findings& m_findings;
};

}  // namespace

long countOwnValues(const SetupFile& file, TagTable table, const char* tag) {
  const TagSource* const source = file.sources.find(tag);
  if (source == nullptr || !isBlock(*source)) {
    return file.tagFile->getTagValueCount(tag);
  }
  const auto isForeign = [&](const SourceLine& line) {
    return isSwallowed(table, *source, line) || isNearlyEnd(line);
  };
  return std::find_if(source->values.begin(), source->values.end(), isForeign) -
         source->values.begin();
}

void checkTagFile(const SetupFile& file, TagTable table, Findings& findings) {
  TagFileCheck(file, table, findings).run();
}

}  // namespace authoring
