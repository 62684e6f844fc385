// The expressions of the instruction script.
#include <gtest/gtest.h>

#include <string>

#include "instructions/Instructions.h"
#include "support/ScriptSupport.h"
#include "support/TestFiles.h"

namespace {

using namespace std::string_literals;

// --- Substitution ---

struct ExpressionRow {
  const char* name;
  std::string text;
  std::string wanted;  // or what is thrown with the prefix "P."
  test::Variables variables = {};
};

const char* const kEmpty = "Line 1: P. Empty expression.";
const char* const kUnclosed = "Line 1: P. Invalid variable specification.";

const ExpressionRow kExpressionRows[] = {
    {"text without references", "plain text", "plain text"},
    {"one character", "x", "x"},
    {"blanks stay", "  a \t b ", "  a \t b "},
    {"quotes are text", "\"a\"", "\"a\""},
    {"zero bytes are text", "a\0b"s, "a\0b"s},
    {"empty", "", kEmpty},

    {"numeric variable", "@N1@", "5", {{"N1", "5"}}},
    {"negative number", "@N1@", "-7", {{"N1", "-7"}}},
    {"numeric variable never set", "@N5@", "0"},
    {"highest number", "@N1@", "2147483647", {{"N1", "2147483647"}}},
    {"string variable", "@S10@", "a b", {{"S10", "a b"}}},
    {"string variable never set", "@S1@", ""},
    {"empty value between text", "a@S1@b", "ab"},
    {"between text", "a@N1@b", "a5b", {{"N1", "5"}}},
    {"first and last", "@N1@-@N2@", "5-6", {{"N1", "5"}, {"N2", "6"}}},
    {"two in a row", "@N1@@S1@", "5x", {{"N1", "5"}, {"S1", "x"}}},
    {"three in a row, the middle one empty", "@N1@@S1@@N2@", "56", {{"N1", "5"}, {"N2", "6"}}},
    {"lower-case reference", "@n1@@s1@", "5x", {{"N1", "5"}, {"S1", "x"}}},
    {"value longer than its reference",
     "<@S1@>",
     "<" + std::string(5000, 'v') + ">",
     {{"S1", std::string(5000, 'v')}}},
    {"value with a zero byte", "<@S1@>", "<a\0b>"s, {{"S1", "a\0b"s}}},

    {"doubled", "@@", "@"},
    {"doubled between text", "a@@b", "a@b"},
    {"doubled first", "@@x", "@x"},
    {"doubled last", "x@@", "x@"},
    {"two doubled", "@@@@", "@@"},
    {"two doubled apart", "@@a@@", "@a@"},
    {"three", "@@@", kUnclosed},
    {"an address", "me@@example.org, you@@example.org", "me@example.org, you@example.org"},

    {"@ alone", "@", kUnclosed},
    {"no closing @", "@N1", kUnclosed},
    {"no closing @ at the end", "a@", kUnclosed},
    {"second one not closed", "@N1@ @N2", kUnclosed},
    // The name is "N1 ", which leaves "0N2@".
    {"closed by the next reference", "@N1 @N2@", kUnclosed},

    {"unknown type", "@X1@",
     "LauncherException: P. Invalid variable reference (X1). Must use N or S as the variable type, "
     "e.g. N2 or S1."},
    {"unknown number", "@N9@", "LauncherException: P. Variable number is invalid (9)"},
    {"type alone", "@N@",
     "LauncherException: P. Variable references must be at least 2 characters (e.g. N1 and S10)."},
    {"blank as name", "@ @",
     "LauncherException: P. Variable references must be at least 2 characters (e.g. N1 and S10)."},
    {"text between two single @", "me@example.org, you@example.org",
     "LauncherException: P. Invalid variable reference (example.org, you). Must use N or S as the "
     "variable type, e.g. N2 or S1."},

    {"value that is a reference", "x@S1@y", "x5y", {{"S1", "@N1@"}, {"N1", "5"}}},
    {"value that begins with a reference", "@S1@", "5z", {{"S1", "@N1@z"}, {"N1", "5"}}},
    {"value that ends with a reference", "@S1@", "z5", {{"S1", "z@N1@"}, {"N1", "5"}}},
    {"references through three variables",
     "@S1@",
     "5",
     {{"S1", "@S2@"}, {"S2", "@S3@"}, {"S3", "@N1@"}, {"N1", "5"}}},
    {"doubled around a name made up by a value", "@@N@N1@@@", "1", {{"N1", "1"}}},
    {"value with the opening @ of a reference in the text",
     "@S1@N1@",
     "5",
     {{"S1", "@"}, {"N1", "5"}}},
    {"value with half a reference", "@S1@1@", "5", {{"S1", "@N"}, {"N1", "5"}}},
    {"value with one @", "@S1@", kUnclosed, {{"S1", "a@b"}}},
    {"value with a doubled @", "@S1@", kUnclosed, {{"S1", "a@@b"}}},
    {"value with two doubled @", "@S1@", "ab", {{"S1", "a@@S2@@b"}}},
    {"value with a bad reference",
     "@S1@",
     "LauncherException: P. Variable number is invalid (6)",
     {{"S1", "@N6@"}}},

    // QUIRK(doubled-at-read-again)
    {"doubled in front of a reference is read again", "@@x@N1@", kUnclosed, {{"N1", "5"}}},
    {"doubled behind a reference is read again", "@N1@x@@", kUnclosed, {{"N1", "5"}}},
    {"doubled without a reference is not", "@@x", "@x"},
    {"two doubled around a name become a reference",
     "@@N1@@ @N2@",
     "5 6",
     {{"N1", "5"}, {"N2", "6"}}},
    {"two doubled around a name alone do not", "@@N1@@", "@N1@", {{"N1", "5"}}},
    {"two doubled beside a reference", "@@@@@N1@", "@5", {{"N1", "5"}}},
};

TEST(Expressions, SubstituteReferences) {
  for (const ExpressionRow& row : kExpressionRows) {
    SCOPED_TRACE(row.name);
    test::setVariables(row.variables);
    const TagFile script;
    EXPECT_EQ(row.wanted, test::outcomeOf([&] {
                SString text(row.text);
                Instructions(script).evalExpr(text, "P.");
                return test::str(text);
              }));
  }
}

struct UnfinishedRow {
  const char* name;
  const char* text;
  const char* left;
  test::Variables variables = {};
};

const UnfinishedRow kUnfinishedRows[] = {
    {"nothing was replaced", "a@X1@b", "a@X1@b"},
    {"what stands in front was", "@N1@ @@ @X1@ @N1@ @@", "5 @ @X1@ @N1@ @@", {{"N1", "5"}}},
    {"up to a reference without an end", "@N1@ @N2", "5 @N2", {{"N1", "5"}}},
    {"a value with a bad reference stands there", "<@S1@>", "<a@N6@>", {{"S1", "a@N6@"}}},
    {"in the second pass the whole first one counts", "@@x@N1@", "@x5", {{"N1", "5"}}},
};

TEST(Expressions, AFailureLeavesTheTextAsFarAsItCame) {
  for (const UnfinishedRow& row : kUnfinishedRows) {
    SCOPED_TRACE(row.name);
    test::setVariables(row.variables);
    const TagFile script;
    SString text(row.text);
    EXPECT_NE("no failure", test::outcomeOf([&] {
                Instructions(script).evalExpr(text, "P.");
                return "no failure";
              }));
    EXPECT_EQ(row.left, test::str(text));
  }
}

// --- Numbers and booleans ---

struct NumberRow {
  const char* name;
  std::string text;
  std::string wantedLong;  // or what is thrown with the prefix "P."
  std::string wantedShort;
  std::string wantedBool;
};

// With N1 = 5, N2 = 1, S1 = "abc", S2 = "2".
const NumberRow kNumberRows[] = {
    {"zero", "0", "0", "0", "false"},
    {"one", "1", "1", "1", "true"},
    {"one with a leading zero", "01", "1", "1", "true"},
    {"one with a leading blank", " 1", "1", "1", "true"},
    {"one with a sign", "+1", "1", "1", "true"},
    {"one with text behind", "1abc", "1", "1", "true"},
    {"minus zero", "-0", "0", "0", "false"},
    {"two", "2", "2", "2", "Line 1: P. Invalid boolean value (2)"},
    {"minus one", "-1", "-1", "-1", "Line 1: P. Invalid boolean value (-1)"},
    {"highest of 16 bits", "32767", "32767", "32767", "Line 1: P. Invalid boolean value (32767)"},
    {"past 16 bits", "32768", "32768", "-32768", "Line 1: P. Invalid boolean value (32768)"},
    {"lowest of 16 bits", "-32768", "-32768", "-32768",
     "Line 1: P. Invalid boolean value (-32768)"},
    {"65536", "65536", "65536", "0", "Line 1: P. Invalid boolean value (65536)"},
    {"65537 is not 1", "65537", "65537", "1", "Line 1: P. Invalid boolean value (65537)"},
    {"highest", "2147483647", "2147483647", "-1", "Line 1: P. Invalid boolean value (2147483647)"},
    {"past the highest", "2147483648", "2147483647", "-1",
     "Line 1: P. Invalid boolean value (2147483648)"},
    {"lowest", "-2147483648", "-2147483648", "0", "Line 1: P. Invalid boolean value (-2147483648)"},
    {"past the lowest", "-2147483649", "-2147483648", "0",
     "Line 1: P. Invalid boolean value (-2147483649)"},
    {"reference", "@N1@", "5", "5", "Line 1: P. Invalid boolean value (@N1@)"},
    {"reference to one", "@N2@", "1", "1", "true"},
    {"digits joined", "@N2@0@N1@", "105", "105", "Line 1: P. Invalid boolean value (@N2@0@N1@)"},
    {"number in a string", "@S2@", "2", "2", "Line 1: P. Invalid boolean value (@S2@)"},
    // QUIRK(long-error-without-blank), QUIRK(short-error-with-blank): the first two results.
    {"word", "abc", "Line 1: P.Invalid numeric expression (abc)",
     "Line 1: P. Invalid numeric expression (abc)", "Line 1: P.Invalid numeric expression (abc)"},
    {"word behind a reference", "x@S1@", "Line 1: P.Invalid numeric expression (xabc)",
     "Line 1: P. Invalid numeric expression (xabc)", "Line 1: P.Invalid numeric expression (xabc)"},
    {"true is no boolean", "true", "Line 1: P.Invalid numeric expression (true)",
     "Line 1: P. Invalid numeric expression (true)", "Line 1: P.Invalid numeric expression (true)"},
    {"blank", " ", "Line 1: P.Invalid numeric expression ( )",
     "Line 1: P. Invalid numeric expression ( )", "Line 1: P.Invalid numeric expression ( )"},
    {"empty value", "@S3@", "Line 1: P.Invalid numeric expression ()",
     "Line 1: P. Invalid numeric expression ()", "Line 1: P.Invalid numeric expression ()"},
    {"empty", "", kEmpty, kEmpty, kEmpty},
    {"not closed", "@N1", kUnclosed, kUnclosed, kUnclosed},
};

class Numbers : public testing::Test {
 protected:
  void SetUp() override {
    test::setVariables({{"N1", "5"}, {"N2", "1"}, {"S1", "abc"}, {"S2", "2"}});
  }
  const TagFile m_script;
  const Instructions m_instructions{m_script};
};

TEST_F(Numbers, Long) {
  for (const NumberRow& row : kNumberRows) {
    EXPECT_EQ(row.wantedLong, test::outcomeOf([&] {
                return std::to_string(m_instructions.evalLongExpr(SString(row.text), "P."));
              }))
        << row.name;
  }
}

TEST_F(Numbers, Short) {
  for (const NumberRow& row : kNumberRows) {
    EXPECT_EQ(row.wantedShort, test::outcomeOf([&] {
                return std::to_string(m_instructions.evalShortExpr(SString(row.text), "P."));
              }))
        << row.name;
  }
}

// QUIRK(boolean-error-as-written): the rows with references.
TEST_F(Numbers, Boolean) {
  for (const NumberRow& row : kNumberRows) {
    EXPECT_EQ(row.wantedBool, test::outcomeOf([&] {
                const SString text(row.text);
                return m_instructions.evalBoolExpr(text, "P.") ? "true"s : "false"s;
              }))
        << row.name;
  }
}

TEST_F(Numbers, TheArgumentItselfStaysAsWritten) {
  const SString text("@N1@");
  EXPECT_EQ(5, m_instructions.evalLongExpr(text, ""));
  EXPECT_STREQ("@N1@", text.c_str());
}

// --- Strings, in place ---

std::string quoteError(const char* position) {
  return "LauncherException: Expected double quote to end argument near "s + position;
}

const ExpressionRow kStringRows[] = {
    {"empty stays empty", "", ""},
    {"word", "abc", "abc"},
    {"quoted", "\"a b\"", "a b"},
    {"quoted with blanks around", "\" a \"", " a "},
    {"doubled quotes", "\"a \"\"b\"\" c\"", "a \"b\" c"},
    {"quoted doubled quote", "\"\"\"\"", "\""},
    {"text behind the closing quote is dropped", "\"a\" b", "a"},
    {"text directly behind the closing quote is dropped", "\"a\"b", "a"},
    {"quote inside a word", "a\"b", "a\"b"},
    {"reference", "ver@N1@", "ver12", {{"N1", "12"}}},
    {"reference in quotes", "\"ver @N1@\"", "ver 12", {{"N1", "12"}}},
    {"value with blanks stays whole", "@S1@", "a b", {{"S1", "a b"}}},
    {"value with quotes keeps them", "@S1@", "\"a b\"", {{"S1", "\"a b\""}}},
    {"value with a quote cannot close", "\"@S1@", quoteError("1"), {{"S1", "\""}}},
    {"no closing quote", "\"abc", quoteError("1")},
    {"quote alone", "\"", quoteError("1")},
    {"doubled quote at the end", "\"abc\"\"", quoteError("-1")},
    {"no closing quote behind a doubled one", "\"a\"\"b", quoteError("4")},
    {"reference not closed", "\"@N1\"", kUnclosed},

    // QUIRK(unquoted-first-word)
    {"words", "a b", "a"},
    {"words with a tab", "a\tb", "a"},
    {"blank first", " a", kEmpty},
    {"reference with a blank in it", "@N 1@", kUnclosed},
    // QUIRK(empty-quotes-are-an-error)
    {"empty quotes", "\"\"", kEmpty},
    {"empty quotes with text behind", "\"\" a", kEmpty},
};

TEST(Strings, AreUnquotedThenSubstituted) {
  for (const ExpressionRow& row : kStringRows) {
    SCOPED_TRACE(row.name);
    test::setVariables(row.variables);
    const TagFile script;
    EXPECT_EQ(row.wanted, test::outcomeOf([&] {
                SString text(row.text);
                Instructions(script).evalStringExpr(text, "P.");
                return test::str(text);
              }));
  }
}

// --- Strings, read from a line ---

struct ReadRow {
  const char* name;
  std::string line;
  std::size_t position;
  std::string wanted;  // the text in brackets and the position, or what is thrown
};

std::string endingQuote(const std::string& partial) {
  return "LauncherException: Expected ending quote in " + partial + ":  P.";
}

// With S1 = "a b", N1 = 5.
const ReadRow kReadRows[] = {
    {"quoted", "x \"a b\" 5", 2, "[a b] 7"},
    {"quoted, position at the next argument's blank", "\"a b\" 5", 0, "[a b] 5"},
    {"quoted with doubled quotes", "\"a \"\"q\"\" b\" 5", 0, "[a \"q\" b] 11"},
    {"quoted with a doubled quote first", "\"\"\"q\" 5", 0, "[\"q] 5"},
    {"quoted with a doubled quote last", "\"q\"\"\" 5", 0, "[q\"] 5"},
    {"quoted doubled quote", "\"\"\"\" 5", 0, "[\"] 4"},
    {"two doubled quotes", "\"\"\"\"\"\" 5", 0, "[\"\"] 6"},
    {"empty quotes", "\"\" 5", 0, kEmpty},
    {"next argument directly behind the quote", "\"a\"5", 0, "[a] 3"},
    {"quoted reference", "\"@S1@\" 5", 0, "[a b] 6"},
    {"unquoted", "abc 5", 0, "[abc] 4"},
    {"unquoted, from the middle", "x abc 5", 2, "[abc] 6"},
    {"unquoted reference", "v@N1@ 5", 0, "[v5] 6"},
    {"unquoted with a quote inside", "a\"b c\" 5", 0, "[a\"b] 4"},
    {"leading white space", " \t\r\nabc 5", 0, "[abc] 8"},
    {"leading white space before a quote", "  \"a b\" 5", 0, "[a b] 7"},
    {"ended by a tab", "abc\t5", 0, "[abc] 4"},
    {"ended by a newline", "abc\n5", 0, "[abc] 4"},
    {"ended by a carriage return", "abc\r5", 0, "[abc] 4"},
    {"a vertical tab does not end it", "ab\vc 5", 0, "[ab\vc] 5"},
    {"one of two blanks is left", "abc  5", 0, "[abc] 4"},
    {"a zero byte is a character", "a\0b 5"s, 0, "[a\0b] 4"s},
    {"reference not closed", "@N1 5", 0, kUnclosed},
    {"unquoted reference to nothing", "@N6@ 5", 0,
     "LauncherException: P. Variable number is invalid (6)"},

    // QUIRK(last-character-of-launch)
    {"at the end of the line", "abc", 0, "[ab] 3"},
    {"one character at the end of the line", "x", 0, "[] 1"},
    {"blank at the end of the line", "abc ", 0, "[abc] 4"},
    {"two blanks at the end of the line", "abc  ", 0, "[abc] 4"},
    {"one character behind", "abc d", 0, "[abc] 4"},
    {"quoted at the end of the line", "\"abc\"", 0, endingQuote("\"abc")},
    {"quoted with a blank behind", "\"abc\" ", 0, "[abc] 5"},
    {"no closing quote", "\"abc d", 0, endingQuote("\"abc ")},
    {"no closing quote, doubled quotes", "\"a\"\"b\"\" c", 0, endingQuote("\"a\"\"b\"\" ")},
    {"quote at the end of the line", "x \"", 2, "[] 3"},
    {"empty quotes at the end of the line", "\"\"", 0, endingQuote("\"")},
    {"reference at the end of the line", "@N1@", 0, kUnclosed},

    {"empty line", "", 0, "[] 1"},
    {"white space alone", "   ", 0, "[] 3"},
    {"at the end", "abc", 3, "[] 4"},
    {"past the end", "abc", 4, "[] 5"},
    {"far past the end", "abc", 1000, "[] 1001"},
};

TEST(Strings, AreReadFromALine) {
  for (const ReadRow& row : kReadRows) {
    SCOPED_TRACE(row.name);
    test::setVariables({{"S1", "a b"}, {"N1", "5"}});
    const TagFile script;
    EXPECT_EQ(row.wanted, test::outcomeOf([&] {
                std::size_t position = row.position;
                SString out("what was there before");
                Instructions(script).evalStringExpr(SString(row.line), position, out, "P.");
                return "[" + test::str(out) + "] " + std::to_string(position);
              }));
  }
}

// --- The way out of a substitution that never ends ---

std::string evaluate(const std::string& text) {
  const TagFile script;
  SString expression(text);
  Instructions(script).evalExpr(expression, "P.");
  return test::str(expression);
}

class Cancellation : public testing::Test {
 protected:
  void SetUp() override { PlatformTestAccess::setCanceled(true); }
  void TearDown() override { PlatformTestAccess::setCanceled(false); }
  const test::ScopedEnvironment m_language{"LANG", "C"};
};

const char* const kCanceled = "LauncherException: Canceled by the user.";

const ExpressionRow kEndlessRows[] = {
    {"value that names itself", "@S1@", kCanceled, {{"S1", "@S1@"}}},
    {"value that names itself and grows", "@S1@", kCanceled, {{"S1", "x@S1@"}}},
    {"value that names itself and grows behind", "@S1@", kCanceled, {{"S1", "@S1@x"}}},
    {"two values that name each other", "@S1@", kCanceled, {{"S1", "@S2@"}, {"S2", "@S1@"}}},
};

TEST_F(Cancellation, EndsASubstitutionThatGoesOnAndOn) {
  for (const ExpressionRow& row : kEndlessRows) {
    test::setVariables(row.variables);
    EXPECT_EQ(row.wanted, test::outcomeOf([&] { return evaluate(row.text); })) << row.name;
  }
}

TEST_F(Cancellation, LeavesAnHonestSubstitutionAlone) {
  test::setVariables({{"N1", "5"}, {"S1", "@S2@"}, {"S2", "@N1@"}});
  EXPECT_EQ("plain", test::outcomeOf([] { return evaluate("plain"); }));
  EXPECT_EQ("x5y", test::outcomeOf([] { return evaluate("x@S1@y"); }));
  std::string references;
  for (int i = 0; i < 1000; ++i) {
    references += "@N1@";
  }
  EXPECT_EQ(std::string(1000, '5'), test::outcomeOf([&] { return evaluate(references); }));
  references += "@N1@";
  EXPECT_EQ(kCanceled, test::outcomeOf([] { return evaluate(std::string(2002, '@')); }));
  EXPECT_EQ(kCanceled, test::outcomeOf([&] { return evaluate(references); }));
}

}  // namespace
