#include "platform/ShellWords.h"

#include <gtest/gtest.h>

#include "support/Texts.h"

namespace {

using test::str;

struct WordRow {
  const char* name;
  const char* text;
  const char* fileName;
  const char* argument;
};

constexpr WordRow kWordRows[] = {
    {"empty", "", R"("")", R"("")"},
    {"plain", "/opt/a.jar", R"("/opt/a.jar")", R"("/opt/a.jar")"},
    {"blanks", "a b\tc", "\"a b\tc\"", "\"a b\tc\""},
    {"a quote", R"(a"b)", R"("a"b")", R"("a\"b")"},
    {"quotes around", R"("a")", R"(""a"")", R"("\"a\"")"},
    {"single quotes", "'a'", R"("'a'")", R"("'a'")"},
    {"only-quotes-are-escaped", R"($HOME `id` a\b\)", R"("$HOME `id` a\b\")",
     R"("$HOME `id` a\b\")"},
};

TEST(ShellWords, WearDoubleQuotes) {
  for (const WordRow& row : kWordRows) {
    EXPECT_EQ(row.fileName, str(fileNameForShell(row.text))) << row.name;
    EXPECT_EQ(row.argument, str(argumentForShell(row.text))) << row.name;
  }
}

}  // namespace
