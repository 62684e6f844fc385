// Where tags and values stand.
#include "authoring/TagSources.h"

#include <gtest/gtest.h>

#include <string>

#include "support/ArchiveFixture.h"
#include "tagfile/TagFile.h"

namespace {

// "NAME@LINE=LINE,LINE" for each definition, with ";LINE" for the end of a block.
std::string describe(const authoring::TagSources& sources) {
  std::string text;
  for (const authoring::TagSource& tag : sources.tags()) {
    text += (text.empty() ? "" : " ") + tag.name + "@" + std::to_string(tag.head.number);
    for (const authoring::SourceLine& value : tag.values) {
      text += "=" + std::to_string(value.number) + "[" + value.text + "]";
    }
    text += tag.end == 0 ? "" : ";" + std::to_string(tag.end);
  }
  return text;
}

struct SourcesRow {
  const char* name;
  const char* text;
  const char* sources;
  std::int32_t last;
  const char* error;
};

const SourcesRow kSourcesRows[] = {
    {"nothing", "", "", 1, ""},
    {"one line", "A: x", "A@1=1[A: x]", 1, ""},
    {"empty lines", "\n\n A : x \r\n\n", "A@3=3[A : x]", 5, ""},
    {"block", "A:\nx\n\n  y z\n/:\nB: \"q\" w\n", "A@1=2[x]=4[y z];5 B@6=6[B: \"q\" w]", 7, ""},
    {"values that do not count", "A:\n\"\"\nx\n\"/:\" y\n", "A@1=3[x];4", 5, ""},
    {"empty block", "A:\n/:\n", "A@1;2", 3, ""},
    {"given again", "A: x\nA:\ny\n/:\n", "A@1=1[A: x] A@2=3[y];4", 5, ""},
    {"no colon", "A: x\nB\n", "A@1=1[A: x]", 2,
     "Syntax error in x at line 2 ==> Missing colon at the end of the tag name."},
    {"no end", "A:\nx\n", "A@1=2[x]", 3,
     "Syntax error in x at line 1 ==> Missing /: tag completer."},
    {"open quote", "\nA: \"x\n", "A@2", 2, "Expected double quote to end argument near 4"},
};

TEST(TagSources, TellTheLines) {
  for (const SourcesRow& row : kSourcesRows) {
    SCOPED_TRACE(row.name);
    authoring::TagSources sources;
    const FilePtr stream = streamOf(row.text);
    EXPECT_EQ(row.error, errorOf([&] { TagFile().load(stream.get(), "x", 0, -1, &sources); }));
    EXPECT_EQ(row.sources, describe(sources));
    EXPECT_EQ(row.last, sources.lastLine().number);
  }
}

TEST(TagSources, FindTheDefinitionThatCounts) {
  authoring::TagSources sources;
  const FilePtr stream = streamOf("A: x\nB: y\nA: z\n");
  TagFile().load(stream.get(), "x", 0, -1, &sources);
  EXPECT_EQ(3, sources.find("A")->head.number);
  EXPECT_EQ(2, sources.find("B")->head.number);
  EXPECT_EQ(nullptr, sources.find("a"));
}

}  // namespace
