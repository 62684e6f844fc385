#include "tagfile/Quotes.h"

#include <gtest/gtest.h>

#include <string_view>

#include "support/Texts.h"
#include "tagfile/TextUtils.h"

using namespace std::string_view_literals;

namespace {

struct QuoteRow {
  const char* name;
  std::string_view text;
  std::string_view inQuotes;
  std::string_view asArgument;
};

constexpr QuoteRow kQuoteRows[] = {
    {"empty", "", R"("")", R"("")"},
    {"one byte", "a", R"("a")", R"("a")"},
    {"blanks", " a b ", R"(" a b ")", R"(" a b ")"},
    {"a quote", R"(")", R"(""")", R"("""")"},
    {"quotes within", R"(a"b""c)", R"("a"b""c")", R"("a""b""""c")"},
    {"quotes around", R"("a")", R"(""a"")", R"("""a""")"},
    {"what a shell reads", R"($a`b`\)", R"("$a`b`\")", R"("$a`b`\")"},
    {"lines", "a\nb", "\"a\nb\"", "\"a\nb\""},
    {"a zero byte", "a\0b"sv, "\"a\0b\""sv, "\"a\0b\""sv},
};

TEST(Quotes, AroundATextAsItIs) {
  for (const QuoteRow& row : kQuoteRows) {
    EXPECT_EQ(row.inQuotes, inQuotes(row.text).view()) << row.name;
  }
}

TEST(Quotes, AroundAnArgumentThatReadsBackEqual) {
  for (const QuoteRow& row : kQuoteRows) {
    const SString argument = asQuotedArgument(row.text);
    EXPECT_EQ(row.asArgument, argument.view()) << row.name;
    std::size_t position = 1;
    EXPECT_EQ(row.text, parseStringArgument(argument, position, true).view()) << row.name;
    EXPECT_EQ(SString::npos, position) << row.name;
  }
}

}  // namespace
