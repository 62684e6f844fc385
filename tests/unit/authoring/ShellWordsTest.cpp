#include "authoring/ShellWords.h"

#include <gtest/gtest.h>

namespace {

// The words in brackets; ";" behind a command that is not the last one.
std::string described(std::string_view text) {
  std::string shown;
  for (const authoring::ShellCommand& command : authoring::readShellCommands(text)) {
    for (const std::string& word : command.words) {
      shown += "[" + word + "]";
    }
    shown += command.isLast ? "" : ";";
  }
  return shown;
}

struct Row {
  const char* name;
  const char* text;
  const char* commands;
};

constexpr Row kRows[] = {
    {"nothing", "", ""},
    {"blanks alone", " \t\n", ""},
    {"words", "java  -cp a.jar\tMain", "[java][-cp][a.jar][Main]"},
    {"quotes", R"("a b"'c d' e"f"g)", "[a bc d][efg]"},
    {"empty word", R"(a "" b)", "[a][][b]"},
    {"quotes in quotes", R"("it's" '"')", R"([it's]["])"},
    {"backslashes", R"(a\ b "\"" '\' \\)", R"([a b]["][\][\])"},
    {"backslash at the end", "a\\", "[a\\]"},
    {"quote that is not closed", "a \"b c", "[a][b c]"},
    {"commands", "a;b | c && d\ne", "[a];[b];[c];[d];[e]"},
    {"signs in quotes", R"(a ";" '&' \|)", "[a][;][&][|]"},
    {"sign at the end", "a;", "[a];"},
    {"parentheses", "(a b)", "[a][b];"},
    {"redirections", "a >b 2>&1 <c d >>'e f'", "[a][d]"},
    {"redirection in front", "2>a b", "[b]"},
    {"number that is a word", "a 2 >b", "[a][2]"},
    {"comment", "a # b; c", "[a]"},
    {"number sign in a word", "a#b c", "[a#b][c]"},
    {"macro", "a #HOME# b", "[a][#HOME#][b]"},
    {"substitution", "a $(b) c", ""},
    {"substitution with backquotes", "a `b` c", ""},
    {"here-document", "a <<b", ""},
};

TEST(ShellWords, AreThoseOfAShell) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.commands, described(row.text));
  }
}

struct EndRow {
  const char* text;
  char end;
};

TEST(ShellWords, EndOutsideQuotesAlone) {
  constexpr EndRow kEnds[] = {{"", '\0'},      {"ab", '\0'},       {"a b", ' '},
                              {"a;b", ';'},    {"\"a b\"c", '\0'}, {"'a;b'", '\0'},
                              {"a\\ b", '\0'}, {"a\\\\ b", ' '},   {"\"a\" b", ' '},
                              {"a(b", '('},    {"$(a b)", '\0'}};
  for (const EndRow& row : kEnds) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.end, authoring::findWordEnd(row.text));
  }
}

TEST(ShellWords, HaveCommentsBehindBlanksOutsideQuotes) {
  EXPECT_TRUE(authoring::hasShellComment("a # b"));
  EXPECT_TRUE(authoring::hasShellComment("a \"b\" #"));
  for (const char* const text : {"a#b", "a \"# b\"", "a \\# b", "$(a # b)", ""}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(authoring::hasShellComment(text));
  }
}

}  // namespace
