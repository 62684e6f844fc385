// References to the script's variables.
#include "instructions/VariableRef.h"

#include <gtest/gtest.h>

#include <string>

#include "support/ScriptSupport.h"

namespace {

using namespace std::string_literals;

struct ReferenceRow {
  const char* name;
  std::string reference;
  std::string wanted;  // the variable, or what is thrown with the prefix "P."
};

const char* const kTooShort =
    "LauncherException: P. Variable references must be at least 2 characters (e.g. N1 and S10).";

std::string invalidType(const std::string& reference) {
  return "LauncherException: P. Invalid variable reference (" + reference +
         "). Must use N or S as the variable type, e.g. N2 or S1.";
}

std::string invalidNumber(const std::string& rest) {
  return "LauncherException: P. Variable number is invalid (" + rest + ")";
}

const ReferenceRow kReferenceRows[] = {
    {"first numeric", "N1", "N1"},
    {"last numeric", "N5", "N5"},
    {"past the last numeric", "N6", invalidNumber("6")},
    {"numeric zero", "N0", invalidNumber("0")},
    {"numeric ten", "N10", invalidNumber("10")},
    {"first string", "S1", "S1"},
    {"sixth string", "S6", "S6"},
    {"last string", "S10", "S10"},
    {"past the last string", "S11", invalidNumber("11")},
    {"string zero", "S0", invalidNumber("0")},
    {"negative", "S-1", invalidNumber("-1")},
    {"lower-case n", "n2", "N2"},
    {"lower-case s", "s10", "S10"},
    {"empty", "", kTooShort},
    {"N alone", "N", kTooShort},
    {"S alone", "S", kTooShort},
    {"one other character", "1", kTooShort},
    {"other type", "X1", invalidType("X1")},
    {"other type, lower case as written", "x1", invalidType("x1")},
    {"other type, long", "Name", "LauncherException: P. Variable number is invalid (ame)"},
    {"digit as type", "11", invalidType("11")},
    {"blank as type", " N1", invalidType(" N1")},
    {"byte outside ASCII as type",
     "\xCE"
     "1",
     invalidType("\xCE"
                 "1")},
    {"zero byte as type", "\0"s + "1", invalidType("\0"s + "1")},
    {"letter as number", "Sx", invalidNumber("x")},
    {"lower-case type with a bad number", "nx", invalidNumber("x")},
    {"doubled type", "NN1", invalidNumber("N1")},
    {"blank as number", "N ", invalidNumber(" ")},
    {"sign alone", "N+", invalidNumber("+")},
    {"number past 32 bits saturates and is invalid", "N4294967297", invalidNumber("4294967297")},
    {"number past 64 bits", "S18446744073709551617", invalidNumber("18446744073709551617")},
    // QUIRK(number-with-trailing-text)
    {"text behind the number", "N1x", "N1"},
    {"point behind the number", "S2.9", "S2"},
    {"blank before the number", "N 2", "N2"},
    {"tab and newline before the number", "S\t\n3", "S3"},
    {"plus sign", "N+3", "N3"},
    {"leading zero", "N03", "N3"},
    {"many leading zeros", "S00000000000000000000010", "S10"},
    {"blank behind the sign", "N+ 3", invalidNumber("+ 3")},
    {"hexadecimal is a zero with text", "N0x1", invalidNumber("0x1")},
};

// The variable that `ref` writes to.
std::string variableOf(const VariableRef& ref) {
  test::setVariables();
  ref.setValue("7", "P.");
  const std::string variables = test::describeVariables();
  EXPECT_EQ(ref.isNumericVariable(), variables[0] == 'N');
  EXPECT_EQ(ref.isStringVariable(), variables[0] == 'S');
  return variables.substr(0, variables.find('='));
}

TEST(VariableRef, ReadsReferences) {
  for (const ReferenceRow& row : kReferenceRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.wanted, test::outcomeOf([&] {
                VariableRef ref;
                ref.init(SString(row.reference), "P.");
                return variableOf(ref);
              }));
  }
}

TEST(VariableRef, IsNoVariableBeforeInit) {
  const VariableRef ref;
  EXPECT_FALSE(ref.isNumericVariable());
  EXPECT_FALSE(ref.isStringVariable());
}

TEST(VariableRef, AnEmptyPrefixLeavesItsBlank) {
  EXPECT_EQ("LauncherException:  Variable number is invalid (9)", test::outcomeOf([] {
              VariableRef().init("N9", "");
              return "";
            }));
}

struct ValueRow {
  const char* name;
  const char* reference;
  std::string value;
  std::string wanted;  // the variables afterwards, or what is thrown with the prefix "P"
};

std::string invalidValue(const std::string& value) {
  return "LauncherException: P Invalid numeric expression in " + value;
}

// Before each row N1 is 99 and S1 is "old".
const ValueRow kValueRows[] = {
    {"number", "N1", "42", "N1=42 S1=[old]"},
    {"zero", "N1", "0", "S1=[old]"},
    {"negative", "N1", "-7", "N1=-7 S1=[old]"},
    {"plus sign", "N1", "+7", "N1=7 S1=[old]"},
    {"text behind the number", "N1", "4x", "N1=4 S1=[old]"},
    {"point behind the number", "N1", "3.9", "N1=3 S1=[old]"},
    {"white space before the number", "N1", " \t\n\v\f\r5", "N1=5 S1=[old]"},
    {"leading zeros are decimal", "N1", "010", "N1=10 S1=[old]"},
    {"highest", "N1", "2147483647", "N1=2147483647 S1=[old]"},
    {"past the highest", "N1", "2147483648", "N1=2147483647 S1=[old]"},
    {"lowest", "N1", "-2147483648", "N1=-2147483648 S1=[old]"},
    {"past the lowest", "N1", "-2147483649", "N1=-2147483648 S1=[old]"},
    {"text before the number", "N1", "x4", invalidValue("x4")},
    {"empty number", "N1", "", invalidValue("")},
    {"blanks alone", "N1", "  ", invalidValue("  ")},
    {"sign alone", "N1", "-", invalidValue("-")},
    {"two signs", "N1", "--1", invalidValue("--1")},
    {"string", "S1", "a b", "N1=99 S1=[a b]"},
    {"string with blanks around", "S1", " a ", "N1=99 S1=[ a ]"},
    {"empty string", "S1", "", "N1=99"},
    {"string with quotes and @", "S1", "\"@N1@\"", "N1=99 S1=[\"@N1@\"]"},
    {"string with a zero byte", "S1", "a\0b"s, "N1=99 S1=[a\0b]"s},
    {"number in a string", "S2", "5", "N1=99 S1=[old] S2=[5]"},
};

TEST(VariableRef, StoresValues) {
  for (const ValueRow& row : kValueRows) {
    SCOPED_TRACE(row.name);
    test::setVariables({{"N1", "99"}, {"S1", "old"}});
    VariableRef ref;
    ref.init(row.reference, "P");
    EXPECT_EQ(row.wanted, test::outcomeOf([&] {
                ref.setValue(SString(row.value), "P");
                return test::describeVariables();
              }));
    if (row.wanted.starts_with("LauncherException")) {
      EXPECT_EQ("N1=99 S1=[old]", test::describeVariables());  // a failure stores nothing
    }
  }
}

struct TextRow {
  const char* reference;
  const char* text;
  const char* number;
};

const TextRow kTextRows[] = {
    {"N1", "-7", "-7"},
    {"N2", "0", "0"},
    {"N3", "2147483647", "2147483647"},
    {"N4", "-2147483648", "-2147483648"},
    {"S1", "a b", "LauncherException: Cannot turn S1 into a numeric value."},
    {"S2", "", "LauncherException: Cannot turn S2 into a numeric value."},
    {"S3", "12", "LauncherException: Cannot turn S3 into a numeric value."},
};

TEST(VariableRef, ReadsValues) {
  test::setVariables(
      {{"N1", "-7"}, {"N3", "2147483647"}, {"N4", "-2147483648"}, {"S1", "a b"}, {"S3", "12"}});
  for (const TextRow& row : kTextRows) {
    SCOPED_TRACE(row.reference);
    VariableRef ref;
    ref.init(row.reference, "");
    EXPECT_EQ(row.text, test::str(ref.getStringValue()));
    EXPECT_EQ(row.number, test::outcomeOf([&] {
                return std::to_string(ref.getNumericValue(SString("Cannot turn ") + row.reference));
              }));
  }
}

}  // namespace
