#include "launchscript/CommandText.h"

#include <gtest/gtest.h>

#include "launchscript/MacroHandler.h"
#include "support/JVMSupport.h"

namespace {

using test::str;

// Bytes and shape, one behind the other.
std::string both(const CommandText& text) {
  return str(text.bytes()) + " " + str(text.shape());
}

TEST(CommandText, KnowsWhatWasInserted) {
  const CommandText text = "a%" + CommandText::inserted("%x\"") + "b";
  EXPECT_EQ("a%%x\"b a%xxxb", both(text));
  EXPECT_FALSE(text.isInserted(1));
  EXPECT_TRUE(text.isInserted(2));
  EXPECT_EQ(6U, text.size());
}

TEST(CommandText, Changes) {
  CommandText text = "abc" + CommandText::inserted("%%");
  EXPECT_EQ("bc% bcx", both(text.substr(1, 3)));
  EXPECT_EQ("a@c%% axcxx", both(CommandText(text).replace(1, 1, CommandText::inserted("@"))));
  EXPECT_EQ("abc% abcx", both(text.erase(3, 1)));
}

TEST(CommandText, StripsWrittenQuotesAlone) {
  const CommandText quote = CommandText::inserted("\"");
  struct Row {
    CommandText text;
    const char* wanted;
  };
  const Row rows[] = {
      {"\"a\"", "a a"}, {"\"\"a\"\"", "\"a\" \"a\""},       {"\"", " "},
      {"", " "},        {quote + "a" + quote, "\"a\" xax"}, {"\"" + quote + "\"", "\" x"}};
  for (const Row& row : rows) {
    CommandText text = row.text;
    text.stripQuotes();
    EXPECT_EQ(row.wanted, both(text));
  }
}

// "%A%" stands for a name with delimiters, "%B%" for a text with the macro "%A%".
class Values : public MacroHandler {
 public:
  CommandText processMacro(const MacroText& text, char, std::size_t start,
                           std::size_t& end) const override {
    const SString name = text.buffer().bytes().substr(start + 1, end - start - 1);
    return name == "A" ? CommandText::inserted("%%B%") : CommandText("<%A%>");
  }
};

TEST(CommandText, InsertedDelimitersAreNoMacros) {
  EXPECT_EQ("%%B% xxxx", both(Values().resolve("%A%", '%')));
  EXPECT_EQ("1<%%B%>%2 1<xxxx>%2", both(Values().resolve("1%B%%%2", '%')));
  EXPECT_EQ("%%%B%%B %xxxxxB",
            both(Values().resolve("%" + CommandText::inserted("%%B%%") + "B", '%')));
}

}  // namespace
