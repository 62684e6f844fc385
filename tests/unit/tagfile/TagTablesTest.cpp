// The tables of the known tags say what the authors' pages say.
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>

#include "support/TestFiles.h"
#include "tagfile/TagNames.h"
#include "tagfile/TagTables.h"

namespace {

using Names = std::set<std::string>;

Names namesOf(TagTable table) {
  Names names;
  for (const TagRow& row : table) {
    if (row.name != std::string(tagname::kJVMMessage)) {  // told further down on the page
      EXPECT_TRUE(names.insert(row.name).second) << row.name << " stands twice";
    }
  }
  return names;
}

// The names in backticks in the first cell of each row of the table of tags below `heading`.
Names namesOnPage(const std::string& file, const std::string& heading) {
  const std::string page = test::readFile((CORVANE_DOCS_DIR "/" + file).c_str());
  const std::size_t begin = page.find("\n| Tag |", page.find("\n" + heading + "\n"));
  EXPECT_NE(std::string::npos, begin) << heading;
  const std::string section = page.substr(begin, page.find("\n\n", begin) - begin);
  static const std::regex cell("\n\\| ([^|]*)\\|");
  static const std::regex name("`([A-Z_]+)`");
  Names names;
  for (std::sregex_iterator c(section.begin(), section.end(), cell), end; c != end; ++c) {
    const std::string text = (*c)[1];
    for (std::sregex_iterator n(text.begin(), text.end(), name); n != end; ++n) {
      names.insert((*n)[1]);
    }
  }
  return names;
}

struct PageRow {
  const char* name;
  TagTable table;
  const char* file;
  const char* heading;
};

const PageRow kPages[] = {
    {"launch script", kLaunchScriptTags, "launch-script.md", "## Tags"},
    {"jvm file", kJVMFileTags, "jvm-file.md", "## Tags"},
    {"input file", kInputFileTags, "formats.md", "## Input file"},
};

TEST(TagTables, HoldTheTagsOfThePages) {
  for (const PageRow& row : kPages) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(namesOnPage(row.file, row.heading), namesOf(row.table));
  }
}

TEST(TagTables, HoldTheOneTagOfTheOtherFiles) {
  EXPECT_EQ(Names{"INSTRUCTIONS"}, namesOf(kInstructionTags));
  EXPECT_EQ(Names{"MESSAGE"}, namesOf(kJVMMessageTags));
}

TEST(TagTables, FindARowByItsWholeName) {
  const TagRow* const row = findTag(kJVMFileTags, tagname::kSearchAll);
  ASSERT_NE(nullptr, row);
  EXPECT_EQ(TagKind::kFlag, row->kind);
  EXPECT_EQ(TagValues::kFirst, row->values);
  EXPECT_EQ(nullptr, findTag(kJVMFileTags, "SEARCH"));
  EXPECT_EQ(nullptr, findTag(kJVMFileTags, "search_all"));
  EXPECT_EQ(nullptr, findTag(kLaunchScriptTags, tagname::kSearchAll));
}

}  // namespace
