// What docs/formats.md shows is so: its tag files load, and its table of lines tells their values.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/TestFiles.h"
#include "tagfile/TagFile.h"
#include "util/LauncherException.h"

namespace {

// What stands between `begin` and the next `end`, for each `begin` of the page.
std::vector<std::string> partsBetween(const std::string& page, const std::string& begin,
                                      const std::string& end) {
  std::vector<std::string> parts;
  for (std::size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at)) {
    at += begin.size();
    const std::size_t size = page.find(end, at) - at;
    parts.push_back(page.substr(at, size));
    at += size;
  }
  return parts;
}

std::string page() {
  return test::readFile(CORVANE_DOCS_DIR "/formats.md");
}

SString writeText(const test::TempDir& dir, const std::string& text) {
  return SString(std::string_view(test::writeFile(dir / "file", text)));
}

TEST(FormatsPage, ItsTagFilesLoad) {
  const test::TempDir dir;
  const std::vector<std::string> texts = partsBetween(page(), "```tag\n", "```\n");
  EXPECT_EQ(5U, texts.size());
  for (const std::string& text : texts) {
    EXPECT_NO_THROW(TagFile(writeText(dir, text))) << text;
  }
}

TEST(FormatsPage, WhatTheLauncherWritesLooksSo) {
  const test::TempDir dir;
  for (const std::string& text : partsBetween(page(), "```tag\n", "```\n")) {
    if (text.find(":  ") != std::string::npos) {  // shown as it is written
      const SString path = writeText(dir, text);
      EXPECT_EQ(0, TagFile(path).write(path));
      EXPECT_EQ(text, test::readFile(path.c_str()));
    }
  }
}

TEST(FormatsPage, ItsLinesHaveTheValuesShown) {
  const test::TempDir dir;
  const std::vector<std::string> rows = partsBetween(page(), "\n| `A:", " |\n");
  EXPECT_EQ(6U, rows.size());
  for (const std::string& row : rows) {
    const std::size_t lineEnd = row.find("` | ");
    const std::string shown = row.substr(lineEnd + 4);
    const TagFile document(writeText(dir, "A:" + row.substr(0, lineEnd) + "\n"));
    const std::string value(document.getTagValue("A", 0).view());
    EXPECT_EQ(value.empty() ? "empty" : "`" + value + "`",
              value.empty() ? shown : shown.substr(0, value.size() + 2))
        << row;
  }
}

}  // namespace
