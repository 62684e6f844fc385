// Which commands are nothing but words to a shell. What other commands are is in the rows of
// VerificationMemoryTest.
#include "launchscript/PlainWords.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/Commands.h"
#include "support/JVMSupport.h"

namespace {

using test::sstr;
using test::str;
using Words = std::vector<std::string>;

Words wordsOf(const CommandText& command) {
  const std::optional<StringDeque> words = plainWords(command);
  Words all;
  for (long i = 0; words && i < words->size(); ++i) {
    all.push_back(str((*words)[i]));
  }
  return all;
}

struct Row {
  const char* command;
  Words words;
};

const Row kRows[] = {
    {"", {}},
    {"   ", {}},
    {"a", {"a"}},
    {" a  b ", {"a", "b"}},
    {"\"a b\"", {"a b"}},
    {"\"\"", {""}},
    {"\"\"\"\" \"\"", {"", ""}},
    {"a\"b c\"d e", {"ab cd", "e"}},
    {"\"/a b/java\" -cp \"/t/v.jar\"   \"Verify\" java.version",
     {"/a b/java", "-cp", "/t/v.jar", "Verify", "java.version"}},
    {"-Dx=\"a;b|c&d(e)*?[f]#~{}<>!'\n\t\" y", {"-Dx=a;b|c&d(e)*?[f]#~{}<>!'\n\t", "y"}},
    {"-XX:+UseSerialGC a@1%^_,/.", {"-XX:+UseSerialGC", "a@1%^_,/."}},
};

TEST(PlainWordsTest, WordsAreThoseOfTheShell) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.command);
    ASSERT_TRUE(plainWords(sstr(row.command)));
    EXPECT_EQ(row.words, wordsOf(sstr(row.command)));
    std::string ofShell;
    for (const std::string& word : row.words) {
      ofShell += word + "|";
    }
    const std::string print =
        std::string("for word in ") + row.command + "\ndo printf '%s|' \"$word\"; done";
    EXPECT_EQ(ofShell, std::string(test::runCaptured(print).output.text()));
  }
}

TEST(PlainWordsTest, InsertedBytesArePartOfTheirWord) {
  const CommandText command =
      CommandText::insertedInQuotes("a $(b)\"") + " " + CommandText::inserted("c d;\n") + "\" e\"";
  EXPECT_EQ((Words{"a $(b)\"", "c d;\n e"}), wordsOf(command));
}

TEST(PlainWordsTest, MoreThanWordsIsNothing) {
  for (const char* command : {"a;b", "$a", "\"$a\"", "\"a", "a\\b", "'a'", "~", "a\nb", "a*"}) {
    SCOPED_TRACE(command);
    EXPECT_FALSE(plainWords(sstr(command)));
  }
}

}  // namespace
