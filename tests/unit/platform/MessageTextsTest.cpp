// The choice of the language, and the texts in English.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "platform/MessageCatalogue.h"
#include "platform/PlatformImpl.h"
#include "support/ConsoleState.h"
#include "support/TestFiles.h"

namespace {

using test::str;

constexpr std::size_t kBufferSize = 1024;

// --- Choice of the language ---

struct LocaleRow {
  const char* name;
  const char* lang;  // null: not set
  int wanted;
};

const LocaleRow kLocaleRows[] = {
    {"not set", nullptr, 0},
    {"empty", "", 0},
    {"C", "C", 0},
    {"C with an encoding", "C.UTF-8", 0},
    {"POSIX matches no code", "POSIX", 0},
    {"unknown language", "xx_YY", 0},
    {"unknown language, one letter", "x", 0},
    {"en", "en", 0},
    {"en_GB.UTF-8", "en_GB.UTF-8", 0},
    {"bg", "bg", 1},
    {"cs_CZ", "cs_CZ", 2},
    {"da", "da", 3},
    {"de_DE", "de_DE", 4},
    {"de with an encoding", "de.ISO-8859-1", 4},
    {"de@euro", "de@euro", 4},
    {"el_GR.UTF-8", "el_GR.UTF-8", 5},
    {"es_MX", "es_MX", 6},
    {"fi", "fi", 7},
    {"fr_CA", "fr_CA", 8},
    {"hr", "hr", 9},
    {"hu", "hu", 10},
    {"it", "it", 11},
    {"ja_JP.eucJP", "ja_JP.eucJP", 12},
    {"ko_KR", "ko_KR", 13},
    {"nl_BE", "nl_BE", 14},
    {"no_NO", "no_NO", 15},
    {"nb", "nb", 15},
    {"nb_NO is Norwegian", "nb_NO", 15},
    {"nn_NO.UTF-8 is Norwegian", "nn_NO.UTF-8", 15},
    {"nb@variant", "nb@variant", 15},
    {"nbl is another language", "nbl", 0},
    {"pl", "pl", 16},
    {"pt", "pt", 17},
    {"pt_PT", "pt_PT", 17},
    {"pt_B is no code", "pt_B", 17},
    {"pt_BR", "pt_BR", 18},
    {"pt_BR.UTF-8", "pt_BR.UTF-8", 18},
    {"five characters count", "pt_BRxyz", 18},
    {"pt_br is another case", "pt_br", 17},
    {"ro", "ro", 19},
    {"ru_RU.KOI8-R", "ru_RU.KOI8-R", 20},
    {"sk", "sk", 21},
    {"sl", "sl", 22},
    {"sv_SE", "sv_SE", 23},
    {"tr", "tr", 24},
    {"zh", "zh", 25},
    {"zh_CN", "zh_CN", 25},
    {"zh_CN.GB2312", "zh_CN.GB2312", 25},
    {"zh_SG", "zh_SG", 25},
    {"zh_TW", "zh_TW", 26},
    {"zh_TW.Big5", "zh_TW.Big5", 26},
    {"hong-kong-reads-english", "zh_HK", 0},
    {"hong-kong-reads-english with an encoding", "zh_HK.Big5", 0},
    {"zh_H is not zh_HK", "zh_H", 25},
    {"a code is a mere prefix", "deutsch", 4},
    {"first of the prefixes in order", "english", 0},
    {"upper case", "DE_DE", 0},
    {"one letter of a code", "d", 0},
    {"leading blank", " de", 0},
};

TEST(MessageTexts, LocaleFromLang) {
  for (const LocaleRow& row : kLocaleRows) {
    const test::ScopedEnvironment lang("LANG", row.lang);
    EXPECT_EQ(row.wanted, get_locale()) << row.name;
  }
}

TEST(MessageTexts, OnlyLangCounts) {
  const test::ScopedEnvironment all("LC_ALL", "de_DE");
  const test::ScopedEnvironment messages("LC_MESSAGES", "de_DE");
  const test::ScopedEnvironment language("LANGUAGE", "de");
  const test::ScopedEnvironment lang("LANG", "fr_FR");
  EXPECT_EQ(8, get_locale());
}

TEST(MessageTexts, LanguageIsAskedEachTime) {
  {
    const test::ScopedEnvironment lang("LANG", "ja");
    EXPECT_STREQ("ja", get_msg(0, nullptr).get());
  }
  const test::ScopedEnvironment lang("LANG", "pt_BR");
  EXPECT_STREQ("pt_BR", get_msg(0, nullptr).get());
}

TEST(MessageTexts, LocalesInOrder) {
  const char* const codes[] = {"en",    "bg", "cs", "da", "de", "el", "es", "fi", "fr",
                               "hr",    "hu", "it", "ja", "ko", "nl", "no", "pl", "pt",
                               "pt_BR", "ro", "ru", "sk", "sl", "sv", "tr", "zh", "zh_TW"};
  for (int i = 0; i < 27; ++i) {
    EXPECT_STREQ(codes[i], storedText(i, 0));
  }
}

// --- Formatting ---

struct TextRow {
  int id;
  const char* wanted;  // with the argument "X"
};

const TextRow kEnglishTexts[] = {
    {0, "en"},
    {1, "Initializing X..."},
    {2, "Searching X..."},
    {3, "Verifying X"},
    {4, "No Java(tm) Virtual Machine was found."},
    {5, "X could not be launched."},
    {6, "A compatible JVM can be downloaded from X"},
    {7, "Running X..."},
    {8, "Preparing Java(tm) Virtual Machine..."},
    {9, "Searching for Java(tm) Virtual Machine..."},
    {10, "Searching for X"},
    {11, "Error creating temporary directory X"},
    {12, "Error creating temporary file X"},
    {13, "LauncherMain"},
    {14, "Invalid platform hint: X"},
    {15, "Execution of Child Process Failed"},
    {16, "Scanning disk(s) for a Java(tm) Virtual Machine..."},
    {17, "Supply the destination directory for the Java Virtual Machine:"},
    {18, "."},
    {19, "Could not load the input file."},
    {20, "Error loading instructions file."},
    {21, "Error loading launch script."},
    {22, "Error loading JVM file."},
    {23, "Invalid JVM file id."},
    {24, "Invalid action in input file: "},
    {25, "A log file name must be specified after the -log option on the command line."},
    {26, "Unable to extract embedded files from the launcher. "},
    {27, "Unable to load the launcher file index. "},
    {28, "No JVM installer was included in the launcher."},
    {29, "The JVM is not valid."},
    {30, "An input file name must follow the '-in' command line option."},
    {31,
     "A suitable JVM could not be found. Please run the program again using the option "
     "-cv:javahome <JAVA HOME DIR>"},
    {32, "Unable to search for all JVMs."},
    {33, "Unable to open input file specified on the command line after the -in option."},
    {34, "Choose the JVM Destination Directory"},
    {35,
     "Corvane(R) is preparing the Corvane Wizard, which\\nwill guide you through the rest of the "
     "setup process.\\nPlease wait..."},
    {36, "Error writing file = "},
    {37,
     " There may not be enough temporary disk space. Try using -cv:tempdir to use a temporary "
     "directory on a partition with more disk space."},
    {38, "Canceled by the user."},
    {39,
     "Cannot use X as the temp directory because it does not exist. Please run the program again "
     "using the option -cv:tempdir <temp dir> to specify a different directory to use."},
};

TEST(MessageTexts, English) {
  const test::ScopedEnvironment lang("LANG", nullptr);
  ASSERT_EQ(40u, std::size(kEnglishTexts));
  for (const TextRow& row : kEnglishTexts) {
    EXPECT_STREQ(row.wanted, get_msg(row.id, "X").get());
  }
}

struct FormatRow {
  const char* name;
  int id;
  const char* arg;
  const char* wanted;
};

const FormatRow kFormatRows[] = {
    {"empty argument", 7, "", "Running ..."},
    {"no argument where one is wanted", 7, nullptr, "Running (null)..."},
    {"no argument where none is wanted", 18, nullptr, "."},
    {"argument with percent signs", 10, "%s%n%%", "Searching for %s%n%%"},
    {"argument beyond ASCII", 10, "\xC3\xA9", "Searching for \xC3\xA9"},
    {"argument of several lines", 10, "a\nb", "Searching for a\nb"},
    {"last id", 39, nullptr,
     "Cannot use (null) as the temp directory because it does not exist. Please run the program "
     "again using the option -cv:tempdir <temp dir> to specify a different directory to use."},
    {"first id past the end", 40, nullptr, "Error displaying message: id(40)"},
    {"unknown id ignores the argument", 41, "X", "Error displaying message: id(41)"},
    {"largest id", INT_MAX, nullptr, "Error displaying message: id(2147483647)"},
    {"negative id", -1, nullptr, "Error displaying message: id(-1)"},
    {"smallest id", INT_MIN, nullptr, "Error displaying message: id(-2147483648)"},
};

TEST(MessageTexts, Formatting) {
  const test::ScopedEnvironment lang("LANG", nullptr);
  for (const FormatRow& row : kFormatRows) {
    EXPECT_STREQ(row.wanted, get_msg(row.id, row.arg).get()) << row.name;
  }
}

struct LengthRow {
  const char* name;
  int id;
  std::size_t argLength;
  std::size_t wantedLength;
  bool keepsEnd;  // of the format
};

const LengthRow kLengthRows[] = {
    {"one less than the most", 10, 1008, 1022, true},
    {"the most", 10, 1009, 1023, true},
    {"one too many", 10, 1010, 1023, true},
    {"far too many", 10, 1000000, 1023, true},
    {"end of the format just fits", 7, 1012, 1023, true},
    {"end of the format is cut", 7, 1013, 1023, false},
};

TEST(MessageTexts, LongArgumentsAreCut) {
  const test::ScopedEnvironment lang("LANG", nullptr);
  for (const LengthRow& row : kLengthRows) {
    const std::string arg(row.argLength, 'x');
    const std::string message = get_msg(row.id, arg.c_str()).get();
    EXPECT_EQ(row.wantedLength, message.size()) << row.name;
    EXPECT_EQ(row.keepsEnd, row.id == 10 || message.ends_with("x...")) << row.name;
  }
}

TEST(MessageTexts, BufferIsZeroBehindTheText) {
  const auto buffer = get_msg(10, "X");
  const std::size_t length = std::string(buffer.get()).size();
  EXPECT_EQ(std::string(kBufferSize - length, '\0'),
            std::string(buffer.get() + length, kBufferSize - length));
}

// --- Identifiers ---

struct IdentifierRow {
  int id;
  int index;  // -1: the empty text
};

const IdentifierRow kIdentifierRows[] = {
    {MSG_INPUT_FILE_LOAD_FAILED, 19},
    {MSG_INSTRUCTIONS_LOAD_FAILED, 20},
    {MSG_LAUNCH_SCRIPT_LOAD_FAILED, 21},
    {MSG_JVM_FILE_LOAD_FAILED, 22},
    {MSG_INVALID_JVM_FILE_ID, 23},
    {MSG_INVALID_ACTION, 24},
    {MSG_LOG_FILE_NAME_MISSING, 25},
    {MSG_EXTRACT_FAILED, 26},
    {MSG_FILE_INDEX_LOAD_FAILED, 27},
    {MSG_NO_JVM_INSTALLER, 28},
    {MSG_INVALID_JVM, 29},
    {MSG_INPUT_FILE_NAME_MISSING, 30},
    {MSG_NO_SUITABLE_JVM, 31},
    {MSG_NO_TEXT, -1},
    {MSG_SEARCH_ALL_FAILED, 32},
    {MSG_INPUT_FILE_OPEN_FAILED, 33},
    {MSG_WRITE_FILE_ERROR, 36},
    {MSG_TEMP_SPACE_HINT, 37},
    {MSG_CANCELED, 38},
    {MSG_TEMP_DIR_MISSING, 39},
    {20, -1},
    {31, -1},
};

TEST(MessageTexts, Identifiers) {
  for (const char* language : {"en", "de", "ja"}) {
    const test::ScopedEnvironment lang("LANG", language);
    for (const IdentifierRow& row : kIdentifierRows) {
      const std::string wanted = row.index < 0 ? "" : get_msg(row.index, nullptr).get();
      const auto id = static_cast<MessageIdentifier>(row.id);
      EXPECT_EQ(wanted, str(PlatformImpl::getMessageText(id))) << language << " " << row.id;
    }
  }
}

TEST(MessageTexts, IdentifiersKeepTheirNumbers) {
  for (std::size_t i = 0; i < 20; ++i) {
    EXPECT_EQ(static_cast<int>(i), kIdentifierRows[i].id);
  }
}

}  // namespace
