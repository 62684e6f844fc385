// The examples of docs/launch-script.md and docs/jvm-file.md: what the pages show is what happens.
#include <gtest/gtest.h>

#include <sstream>

#include "jvm/JVMFile.h"
#include "launchscript/LaunchScript.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"
#include "util/StringPair.h"

namespace {

using test::sstr;
using test::str;
using Strings = std::vector<std::string>;

std::string page(const std::string& name) {
  return test::readFile(CORVANE_DOCS_DIR "/" + name);
}

std::string section(const std::string& text, const std::string& title) {
  const std::size_t begin = text.find("\n## " + title + "\n");
  EXPECT_NE(std::string::npos, begin) << title;
  return text.substr(begin, text.find("\n## ", begin + 1) - begin);
}

std::string firstCodeBlock(const std::string& text) {
  const std::string fence = "\n```\n";
  const std::size_t begin = text.find(fence) + fence.size();
  return text.substr(begin, text.find(fence, begin) + 1 - begin);
}

// What stands in backquotes in a cell of a table.
Strings codes(const std::string& cell) {
  Strings found;
  for (std::size_t begin = cell.find('`'); begin != std::string::npos;) {
    const std::size_t end = cell.find('`', begin + 1);
    found.push_back(cell.substr(begin + 1, end - begin - 1));
    begin = cell.find('`', end + 1);
  }
  return found;
}

// "| a | b |" as "| a" and "| b".
Strings cellsOf(const std::string& line) {
  Strings cells;
  std::size_t begin = 0;
  for (std::size_t end = line.find(" |"); end != std::string::npos; end = line.find(" |", begin)) {
    cells.push_back(line.substr(begin, end - begin));
    begin = end + 1;
  }
  return cells;
}

// The rows of the first table, without its two lines of heading.
std::vector<Strings> tableRows(const std::string& text) {
  std::vector<Strings> rows;
  std::istringstream lines(text.substr(text.find("\n|") + 1));
  for (std::string line; std::getline(lines, line) && line.starts_with("|");) {
    rows.push_back(cellsOf(line));
  }
  rows.erase(rows.begin(), rows.begin() + 2);
  return rows;
}

TEST(Examples, TemplatesBecomeWhatThePageSays) {
  const test::TempDir dir;
  const std::string text = section(page("launch-script.md"), "Examples");
  TagFile jvmFile(sstr(test::writeFile(dir / "jvm", firstCodeBlock(text))));
  const JVMFile jvm(jvmFile);
  LauncherTestAccess::setLauncherFileName(dir / "setup");
  const test::ScopedEnvironment user("USER", "ann");
  const std::vector<Strings> rows = tableRows(text);
  EXPECT_EQ(14u, rows.size());
  for (const Strings& row : rows) {
    ASSERT_EQ(2u, row.size());
    const std::string command = codes(row[0]).at(0);
    EXPECT_EQ(codes(row[1]).at(0),
              test::outcome([&] { return LaunchScript(sstr(command), true).resolve(jvm); }))
        << command;
  }
}

TEST(Examples, ExpectedValuesAcceptAndRefuse) {
  const std::vector<Strings> rows =
      tableRows(section(page("jvm-file.md"), "How a candidate is judged"));
  EXPECT_EQ(4u, rows.size());
  TagFile tags;
  const JVMFile jvm(tags);
  for (const Strings& row : rows) {
    ASSERT_EQ(3u, row.size());
    StringPairPtrDeque properties;
    properties.push_back(std::make_unique<StringPair>(StringPair{"p", sstr(codes(row[0]).at(0))}));
    for (const bool accepted : {true, false}) {
      for (const std::string& value : codes(row[accepted ? 1 : 2])) {
        EXPECT_EQ(accepted, jvm.verifyJVMOutput(sstr("1739021872\n" + value + "\n"), properties))
            << row[0] << ": " << value;
      }
    }
  }
}

TEST(Examples, JVMFileOfThePageLoads) {
  const test::TempDir dir;
  TagFile tags(sstr(test::writeFile(dir / "jvm", firstCodeBlock(page("jvm-file.md")))));
  const JVMFile jvm(tags);
  EXPECT_EQ("Java 17", str(jvm.getDesc()));
  EXPECT_EQ(2, tags.getTagValueCount("PATH_HINT"));
  EXPECT_EQ("-cp :-D=", str(jvm.resolve("@CLASSPATH@@CLASSPATH_SEPARATOR@@SYSTEM@"
                                        "@SYSTEM_SEPARATOR@")));
}

}  // namespace
