// What the environment says of the user: the variables in their order, and charsets in names.
#include <gtest/gtest.h>

#include <string>

#include "platform/CharsetTables.h"
#include "platform/UserLocale.h"
#include "support/TestFiles.h"

namespace {

struct VariableRow {
  const char* name;
  const char* all;  // null: not set
  const char* category;
  const char* lang;
  const char* wanted;
};

const VariableRow kVariableRows[] = {
    {"nothing set", nullptr, nullptr, nullptr, ""},
    {"all empty", "", "", "", ""},
    {"LANG alone", nullptr, nullptr, "de_DE", "de_DE"},
    {"the category before LANG", nullptr, "fr_FR", "de_DE", "fr_FR"},
    {"LC_ALL before the category", "it_IT", "fr_FR", "de_DE", "it_IT"},
    {"empty ones do not count", "", "", "de_DE", "de_DE"},
    {"C counts", "C", "fr_FR", "de_DE", "C"},
};

TEST(UserLocale, Variables) {
  for (const VariableRow& row : kVariableRows) {
    const test::ScopedEnvironment all("LC_ALL", row.all);
    const test::ScopedEnvironment category("LC_MESSAGES", row.category);
    const test::ScopedEnvironment other("LC_CTYPE", "es_ES");
    const test::ScopedEnvironment lang("LANG", row.lang);
    EXPECT_STREQ(row.wanted, userLocale("LC_MESSAGES")) << row.name;
  }
}

struct NameRow {
  const char* locale;
  const char* wanted;
};

const NameRow kNameRows[] = {
    {"de_DE.UTF-8", "UTF-8"},
    {"de_DE.utf8@euro", "utf8"},
    {".x", "x"},
    {"", ""},
    {"C", ""},
    {"UTF-8", ""},
    {"de_DE@euro", ""},
    {"de_DE.", ""},
    {"de_DE@x.UTF-8", ""},
    {"de_DE.ISO-8859-15@x.UTF-8", "ISO-8859-15"},
    {"@.x", ""},
    {"de_DE.@euro", ""},
    {"a.b.c", "b.c"},
};

TEST(UserLocale, CharsetInName) {
  for (const NameRow& row : kNameRows)
    EXPECT_EQ(row.wanted, charsetInName(row.locale)) << row.locale;
}

// No locale "xx_YY" is installed anywhere.
struct CharsetRow {
  const char* locale;
  NamedCharset rule;
  const char* wanted;  // "": ASCII
};

const CharsetRow kCharsetRows[] = {
    {"C", NamedCharset::IsBelieved, ""},
    {"xx_YY", NamedCharset::IsBelieved, ""},
    {"xx_YY.UTF-8", NamedCharset::IsBelieved, "utf8"},
    {"xx_YY.UTF-8", NamedCharset::MustBeInstalled, "utf8"},
    {"xx_YY.ISO-8859-1", NamedCharset::IsBelieved, "iso88591"},
    {"xx_YY.ISO-8859-1", NamedCharset::MustBeInstalled, ""},
    {"xx_YY.none", NamedCharset::IsBelieved, ""},
    {"xx_YY.UTF-16", NamedCharset::MustBeInstalled, ""},
};

std::string nameOf(Charset charset) {
  return charset.isUtf8()      ? "utf8"
         : charset.table() < 0 ? ""
                               : kCharsetTables[charset.table()].name;
}

TEST(UserLocale, CharsetsOfUnknownLocales) {
  for (const CharsetRow& row : kCharsetRows) {
    const test::ScopedEnvironment all("LC_ALL", row.locale);
    EXPECT_EQ(row.wanted, nameOf(userCharset(row.rule))) << row.locale;
  }
}

}  // namespace
