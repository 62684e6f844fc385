// The messages of the stub for any terminal: the choice of language and charset, and what is
// written then. Linked with the texts in UTF-8.
#include <gtest/gtest.h>

#include <string>

#include "platform/CharsetTables.h"
#include "platform/MessageCatalogue.h"
#include "support/TestFiles.h"

namespace {

struct LanguageRow {
  const char* name;
  const char* all;  // null: not set
  const char* messages;
  const char* lang;
  const char* wanted;  // the locale's code
};

// In UTF-8, which shows every language: LC_ALL or LC_CTYPE tells it.
const LanguageRow kLanguageRows[] = {
    {"nothing set", nullptr, nullptr, nullptr, "en"},
    {"C", nullptr, nullptr, "C", "en"},
    {"POSIX", nullptr, nullptr, "POSIX", "en"},
    {"LANG alone", nullptr, nullptr, "de_DE", "de"},
    {"LC_MESSAGES before LANG", nullptr, "fr_FR", "de_DE", "fr"},
    {"LC_ALL before both", "it_IT.UTF-8", "fr_FR", "de_DE", "it"},
    {"empty ones do not count", "", "", "de_DE", "de"},
    {"LC_ALL=C is English", "C", "fr_FR", "de_DE", "en"},
    {"language alone", nullptr, nullptr, "ja", "ja"},
    {"with a variant", nullptr, nullptr, "de@euro", "de"},
    {"with a charset alone", nullptr, nullptr, "de.UTF-8", "de"},
    {"country with a table of its own", nullptr, nullptr, "pt_BR.UTF-8", "pt_BR"},
    {"country without one", nullptr, nullptr, "pt_PT", "pt"},
    {"no code of a country", nullptr, nullptr, "pt_BRxyz", "pt"},
    {"zh_TW", nullptr, nullptr, "zh_TW.Big5", "zh_TW"},
    {"zh_SG", nullptr, nullptr, "zh_SG", "zh"},
    {"hong-kong-reads-english", nullptr, nullptr, "zh_HK.Big5", "en"},
    {"no_NO", nullptr, nullptr, "no_NO", "no"},
    {"nb_NO", nullptr, nullptr, "nb_NO.UTF-8", "no"},
    {"nn_NO", nullptr, nullptr, "nn_NO", "no"},
    {"Filipino is no Finnish", nullptr, nullptr, "fil_PH", "en"},
    {"Konkani is no Korean", nullptr, nullptr, "kok_IN", "en"},
    {"Kashubian is no Czech", nullptr, nullptr, "csb_PL", "en"},
    {"a word is no code", nullptr, nullptr, "deutsch", "en"},
    {"upper case", nullptr, nullptr, "DE_DE", "en"},
    {"one letter of a code", nullptr, nullptr, "d", "en"},
    {"leading blank", nullptr, nullptr, " de", "en"},
};

TEST(AnyTerminal, Languages) {
  const test::ScopedEnvironment ctype("LC_CTYPE", "C.UTF-8");
  for (const LanguageRow& row : kLanguageRows) {
    const test::ScopedEnvironment all("LC_ALL", row.all);
    const test::ScopedEnvironment messages("LC_MESSAGES", row.messages);
    const test::ScopedEnvironment lang("LANG", row.lang);
    EXPECT_STREQ(row.wanted, storedText(get_locale(), 0)) << row.name;
  }
}

struct TextRow {
  const char* lang;
  int id;
  const char* wanted;
};

constexpr int kInitializing = kCatalogueInitializing;

// None of these locales need be installed: the name of the charset is believed.
const TextRow kTextRows[] = {
    {"de_DE.UTF-8", kCataloguePreparingJVM, "Java(tm) Virtual Machine wird vorbereitet..."},
    {"fr_FR.UTF-8", kInitializing, "Initialisation de X..."},
    {"fr_FR.UTF-8", kCataloguePreparingJVM,
     "Pr\xC3\xA9paration de la machine virtuelle Java(tm)..."},
    {"fr_FR.ISO-8859-1", kCataloguePreparingJVM,
     "Pr\xE9paration de la machine virtuelle Java(tm)..."},
    {"fr_FR.ISO-8859-15@euro", kCataloguePreparingJVM,
     "Pr\xE9paration de la machine virtuelle Java(tm)..."},
    {"fr_FR.ISO-8859-5", kCataloguePreparingJVM, "Preparing Java(tm) Virtual Machine..."},
    {"fr_FR.none", kCataloguePreparingJVM, "Preparing Java(tm) Virtual Machine..."},
    {"fr_XX@variant.UTF-8", kCataloguePreparingJVM, "Preparing Java(tm) Virtual Machine..."},
    {"ru_RU.UTF-8", 7, "\u0417\u0430\u043F\u0443\u0441\u043A X..."},
    {"ru_RU.ISO-8859-5", 7, "\xB7\xD0\xDF\xE3\xE1\xDA X..."},
    {"ru_RU.KOI8-R", 7, "\xFA\xC1\xD0\xD5\xD3\xCB X..."},
    {"ru_RU.CP1251", 7, "\xC7\xE0\xEF\xF3\xF1\xEA X..."},
    {"ru_RU.ISO-8859-1", 7, "Running X..."},
    {"ro_RO.UTF-8", 24, "Ac\u021Biune nevalid\u0103 \u00EEn fi\u0219ierul de intrare: "},
    {"ro_RO.ISO-8859-2", 24, "Ac\xFEiune nevalid\xE3 \xEEn fi\xBAierul de intrare: "},
    {"ro_RO.ISO-8859-16", 24, "Ac\xFEiune nevalid\xE3 \xEEn fi\xBAierul de intrare: "},
    {"ro_RO.CP1250", 24, "Ac\xFEiune nevalid\xE3 \xEEn fi\xBAierul de intrare: "},
    {"ja_JP.eucJP", 38,
     "\xA5\xE6\xA1\xBC\xA5\xB6\xA1\xBC\xA4\xCB\xA4\xE8\xA4\xC3\xA4\xC6\xA5\xAD\xA5\xE3\xA5\xF3"
     "\xA5\xBB\xA5\xEB\xA4\xB5\xA4\xEC\xA4\xDE\xA4\xB7\xA4\xBF\xA1\xA3"},
    {"ja_JP.SJIS", 38, "Canceled by the user."},
    {"ja_JP.eucKR", 38, "Canceled by the user."},
    {"en_US.UTF-8", 38, "Canceled by the user."},
};

TEST(AnyTerminal, Texts) {
  const test::ScopedEnvironment all("LC_ALL", nullptr);
  const test::ScopedEnvironment messages("LC_MESSAGES", nullptr);
  const test::ScopedEnvironment ctype("LC_CTYPE", nullptr);
  for (const TextRow& row : kTextRows) {
    const test::ScopedEnvironment lang("LANG", row.lang);
    EXPECT_STREQ(row.wanted, get_msg(row.id, "X").get()) << row.lang;
  }
}

TEST(AnyTerminal, ArgumentsAreNotConverted) {
  const test::ScopedEnvironment all("LC_ALL", "ru_RU.KOI8-R");
  EXPECT_STREQ("\xFA\xC1\xD0\xD5\xD3\xCB \xC3\xA9%s...", get_msg(7, "\xC3\xA9%s").get());
}

struct ShownRow {
  const char* code;
  const char* charsets;  // by their tables' names, in their order
};

const ShownRow kShownRows[] = {
    {"bg", "iso88595 koi8r koi8u koi8t cp1251 pt154 eucjp euckr gb2312 euccn gbk gb18030"},
    {"cs", "iso88592 cp1250"},
    {"da",
     "iso88591 iso88594 iso88599 iso885910 iso885913 iso885914 iso885915 cp1252 cp1254 cp1257"},
    {"de",
     "iso88591 iso88592 iso88593 iso88594 iso88599 iso885910 iso885913 iso885914 iso885915 "
     "iso885916 cp1250 cp1252 cp1254 cp1257"},
    {"el", "iso88597 cp1253"},
    {"es",
     "iso88591 iso88592 iso88593 iso88599 iso885910 iso885914 iso885915 iso885916 cp1250 cp1252 "
     "cp1254 gb2312 euccn gbk gb18030"},
    {"fi",
     "iso88591 iso88592 iso88593 iso88594 iso88599 iso885910 iso885913 iso885914 iso885915 "
     "iso885916 cp1250 cp1252 cp1254 cp1257"},
    {"fr", "iso88591 iso88593 iso88599 iso885914 iso885915 iso885916 cp1252 cp1254"},
    {"hr", "iso88592 iso885916 cp1250"},
    {"hu", "iso88592 iso885916 cp1250"},
    {"it", "iso88591 iso88593 iso88599 iso885914 iso885915 iso885916 cp1252 cp1254"},
    {"ja", "eucjp"},
    {"ko", "euckr"},
    {"nl",
     "iso88591 iso88593 iso88599 iso885910 iso885914 iso885915 iso885916 cp1252 cp1254 georgianps"},
    {"no",
     "iso88591 iso88594 iso88599 iso885910 iso885913 iso885914 iso885915 cp1252 cp1254 cp1257"},
    {"pl", "iso88592 iso885913 iso885916 cp1250 cp1257"},
    {"pt", "iso88591 iso88599 iso885914 iso885915 cp1252 cp1254"},
    {"pt_BR", "iso88591 iso88599 iso885914 iso885915 cp1252 cp1254"},
    {"ro", "iso88592 iso885916 cp1250"},
    {"ru", "iso88595 koi8r koi8u koi8t cp1251 pt154 eucjp euckr gb2312 euccn gbk gb18030"},
    {"sk", "iso88592 cp1250"},
    {"sl", "iso88592 iso88594 iso885910 iso885913 iso885916 cp1250 cp1257"},
    {"sv",
     "iso88591 iso88594 iso88599 iso885910 iso885913 iso885914 iso885915 cp1252 cp1254 cp1257"},
    {"tr", "iso88593 iso88599 cp1254"},
    {"zh", "gb2312 euccn gbk gb18030"},
    {"zh_TW", "euctw big5"},
};

// Each language is shown in its traditional encoding, and in which others, is told here.
TEST(AnyTerminal, CharsetsOfTheLanguages) {
  std::string found;
  for (int i = 1; i < kLocaleCount; ++i) {
    found += storedText(i, 0) + std::string(":");
    for (int table = 0; table < kCharsetCount; ++table) {
      if ((kLocaleCharsets[i] >> table & 1) != 0)
        found += std::string(" ") + kCharsetTables[table].name;
    }
    found += "\n";
  }
  std::string wanted;
  for (const ShownRow& row : kShownRows)
    wanted += row.code + std::string(": ") + row.charsets + "\n";
  EXPECT_EQ(wanted, found);
}

}  // namespace
