// All 27 x 40 entries of the message catalogue, as they are linked into a program: built twice,
// with the texts in the traditional encodings and with those in UTF-8 (CORVANE_CATALOGUE_UTF8).
//
// The PO files are read by a small reader of the test's own, so that the generator is not measured
// by its own ruler.
#include <gtest/gtest.h>
#include <iconv.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/MessageCatalogue.h"
#include "support/TestFiles.h"

namespace {

const struct Row {
  const char* code;
  const char* traditional;
} kRows[kLocaleCount] = {
    {"en", "US-ASCII"},   {"bg", "ISO-8859-5"}, {"cs", "ISO-8859-2"},    {"da", "ISO-8859-1"},
    {"de", "ISO-8859-1"}, {"el", "ISO-8859-7"}, {"es", "ISO-8859-1"},    {"fi", "ISO-8859-1"},
    {"fr", "ISO-8859-1"}, {"hr", "ISO-8859-2"}, {"hu", "ISO-8859-2"},    {"it", "ISO-8859-1"},
    {"ja", "EUC-JP"},     {"ko", "EUC-KR"},     {"nl", "ISO-8859-1"},    {"no", "ISO-8859-1"},
    {"pl", "ISO-8859-2"}, {"pt", "ISO-8859-1"}, {"pt_BR", "ISO-8859-1"}, {"ro", "ISO-8859-2"},
    {"ru", "ISO-8859-5"}, {"sk", "ISO-8859-2"}, {"sl", "ISO-8859-2"},    {"sv", "ISO-8859-1"},
    {"tr", "ISO-8859-9"}, {"zh", "GB2312"},     {"zh_TW", "BIG5"},
};

const char* const kEnglish[kCatalogueSize] = {
    "en",
    "Initializing %s...",
    "Searching %s...",
    "Verifying %s",
    "No Java(tm) Virtual Machine was found.",
    "%s could not be launched.",
    "A compatible JVM can be downloaded from %s",
    "Running %s...",
    "Preparing Java(tm) Virtual Machine...",
    "Searching for Java(tm) Virtual Machine...",
    "Searching for %s",
    "Error creating temporary directory %s",
    "Error creating temporary file %s",
    "LauncherMain",
    "Invalid platform hint: %s",
    "Execution of Child Process Failed",
    "Scanning disk(s) for a Java(tm) Virtual Machine...",
    "Supply the destination directory for the Java Virtual Machine:",
    ".",
    "Could not load the input file.",
    "Error loading instructions file.",
    "Error loading launch script.",
    "Error loading JVM file.",
    "Invalid JVM file id.",
    "Invalid action in input file: ",
    "A log file name must be specified after the -log option on the command line.",
    "Unable to extract embedded files from the launcher. ",
    "Unable to load the launcher file index. ",
    "No JVM installer was included in the launcher.",
    "The JVM is not valid.",
    "An input file name must follow the '-in' command line option.",
    "A suitable JVM could not be found. Please run the program again using the option "
    "-cv:javahome <JAVA HOME DIR>",
    "Unable to search for all JVMs.",
    "Unable to open input file specified on the command line after the -in option.",
    "Choose the JVM Destination Directory",
    "Corvane(R) is preparing the Corvane Wizard, which\\nwill guide you through the rest of the "
    "setup process.\\nPlease wait...",
    "Error writing file = ",
    " There may not be enough temporary disk space. Try using -cv:tempdir to use a temporary "
    "directory on a partition with more disk space.",
    "Canceled by the user.",
    "Cannot use %s as the temp directory because it does not exist. Please run the program again "
    "using the option -cv:tempdir <temp dir> to specify a different directory to use.",
};

// An identifier and the progress dot, which no language translates.
bool isFixed(int index) {
  return index == 13 || index == kCatalogueDot;
}

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

// The blanks at both ends, with a bar in the place of the text between.
std::string outline(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(0, first) + "|" + text.substr(last + 1);
}

// The words that stay as they are, each as often as it occurs.
std::vector<std::string> fixedWords(const std::string& text) {
  std::vector<std::string> words;
  for (const char* word : {"-cv:javahome", "-cv:tempdir", "-log", "'-in'", " -in", "(tm)", "(R)",
                           "Corvane", "%s", "\\n", "="}) {
    words.insert(words.end(), countOf(text, word), word);
  }
  return words;
}

// Calls `check` with each row, its table and an index from 1, and tells the place when it fails.
template <class Check>
void forEachMessage(Check check) {
  for (int i = 0; i < kLocaleCount; ++i) {
    for (int index = 1; index < kCatalogueSize; ++index) {
      SCOPED_TRACE(std::string(kRows[i].code) + ", entry " + std::to_string(index));
      check(kRows[i], std::string(storedText(i, index)), index);
    }
  }
}

// The part of a PO file's line between the quotes, with its escapes resolved.
std::string unquoted(const std::string& line) {
  std::string text;
  const std::size_t end = line.rfind('"');
  for (std::size_t at = line.find('"') + 1; at < end; ++at) {
    if (line[at] == '\\') ++at;
    text += line[at];
  }
  return text;
}

// msgctxt to msgstr; knows no more of the format than our files use (no other escapes than
// backslash and quote outside the header).
std::map<std::string, std::string> readTranslations(const std::string& code) {
  std::map<std::string, std::string> texts;
  std::string context;
  bool inText = false;
  std::string file = test::readFile(CORVANE_MESSAGES_DIR "/" + code + ".po");
  for (std::size_t end = file.find('\n'); end != std::string::npos; end = file.find('\n')) {
    const std::string line = file.substr(0, end);
    file.erase(0, end + 1);
    if (line.starts_with("msgctxt ")) context = unquoted(line);
    if (line.starts_with("msgstr ") || (inText && line.starts_with("\""))) {
      texts[context] += unquoted(line);
      inText = true;
    } else {
      inText = false;
    }
  }
  return texts;
}

class Decoder {
 public:
  explicit Decoder(const char* encoding) : m_converter(iconv_open("UTF-8", encoding)) {}
  ~Decoder() {
    if (isOpen()) iconv_close(m_converter);
  }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  bool isOpen() const { return m_converter != reinterpret_cast<iconv_t>(-1); }

  std::string decode(std::string bytes) {
    std::string text(bytes.size() * 4, '\0');
    char* from = bytes.data();
    char* to = text.data();
    std::size_t fromLeft = bytes.size();
    std::size_t toLeft = text.size();
    if (iconv(m_converter, &from, &fromLeft, &to, &toLeft) != 0) return "not decodable: " + bytes;
    text.resize(text.size() - toLeft);
    return text;
  }

 private:
  iconv_t m_converter;
};

const char* encodingOf(const Row& row) {
#ifdef CORVANE_CATALOGUE_UTF8
  static_cast<void>(row.traditional);
  return "UTF-8";
#else
  return row.traditional;
#endif
}

// The commas of Romanian are cedillas in the traditional encoding.
std::string asStored(std::string text) {
#ifndef CORVANE_CATALOGUE_UTF8
  const std::pair<std::string, const char*> letters[] = {
      {"\u0218", "\u015E"}, {"\u0219", "\u015F"}, {"\u021A", "\u0162"}, {"\u021B", "\u0163"}};
  for (const auto& [comma, cedilla] : letters) {
    for (std::size_t at = text.find(comma); at != std::string::npos; at = text.find(comma))
      text.replace(at, comma.size(), cedilla);
  }
#endif
  return text;
}

TEST(CatalogueTable, HasTheLocalesInOrder) {
  for (int i = 0; i < kLocaleCount; ++i)
    EXPECT_STREQ(kRows[i].code, storedText(i, 0));
}

TEST(CatalogueTable, StoresNothingBetweenTheTexts) {
  EXPECT_EQ(kStoredTexts, storedText(0, 0));
  for (int i = 1; i < kLocaleCount; ++i) {
    const char* last = storedText(i - 1, kCatalogueSize - 1);
    EXPECT_EQ(last + std::strlen(last) + 1, storedText(i, 0)) << kRows[i].code;
  }
}

TEST(CatalogueTable, TellsItsSort) {
#ifdef CORVANE_CATALOGUE_UTF8
  EXPECT_TRUE(kTextsAreUtf8);
#else
  EXPECT_FALSE(kTextsAreUtf8);
#endif
}

TEST(CatalogueTable, HoldsTheEnglishTexts) {
  for (int index = 0; index < kCatalogueSize; ++index)
    EXPECT_STREQ(kEnglish[index], storedText(0, index)) << "entry " << index;
}

TEST(CatalogueTable, DecodesToTheTextsOfThePoFiles) {
  for (int i = 1; i < kLocaleCount; ++i) {
    Decoder decoder(encodingOf(kRows[i]));
#ifdef CORVANE_CROSS_BUILD
    if (!decoder.isOpen()) GTEST_SKIP() << "no converters for this processor";
#endif
    ASSERT_TRUE(decoder.isOpen()) << encodingOf(kRows[i]);
    auto texts = readTranslations(kRows[i].code);
    EXPECT_EQ(40u, texts.size()) << "the header and 39 messages in " << kRows[i].code;
    for (int index = 1; index < kCatalogueSize; ++index) {
      EXPECT_EQ(asStored(texts[std::to_string(index)]), decoder.decode(storedText(i, index)))
          << kRows[i].code << ", entry " << index;
    }
  }
}

// What a printf format may hold, and nothing that a terminal takes for a command: in none of the
// encodings is a byte below 0x20 a part of a character, nor 0x80 to 0x9F in the 8-bit ones.
TEST(CatalogueTable, HoldsNoControlCharacters) {
  forEachMessage([](const Row& row, const std::string& text, int) {
    const bool highControls = std::string(encodingOf(row)).starts_with("ISO-");
    for (const char byte : text) {
      const auto number = static_cast<unsigned char>(byte);
      EXPECT_TRUE(number >= 0x20 && number != 0x7F) << text;
      EXPECT_FALSE(highControls && number >= 0x80 && number < 0xA0) << text;
    }
  });
}

TEST(CatalogueTable, KeepsPlaceholders) {
  forEachMessage([](const Row&, const std::string& text, int index) {
    EXPECT_EQ(countOf(kEnglish[index], "%s"), countOf(text, "%s")) << text;
    EXPECT_EQ(countOf(text, "%s"), countOf(text, "%")) << text;
  });
}

TEST(CatalogueTable, KeepsLeadingAndTrailingBlanks) {
  forEachMessage([](const Row&, const std::string& text, int index) {
    EXPECT_EQ(outline(kEnglish[index]), outline(text)) << text;
  });
}

TEST(CatalogueTable, KeepsNamesOptionsAndLineBreaks) {
  forEachMessage([](const Row&, const std::string& text, int index) {
    for (const std::string& word : fixedWords(kEnglish[index])) {
      EXPECT_EQ(countOf(kEnglish[index], word), countOf(text, word)) << word << " in " << text;
    }
  });
}

TEST(CatalogueTable, FitsTheMessageBuffer) {
  forEachMessage([](const Row&, const std::string& text, int) { EXPECT_LT(text.size(), 512u); });
}

TEST(CatalogueTable, TranslatesEverythingThatHasWords) {
  forEachMessage([](const Row& row, const std::string& text, int index) {
    if (std::string(row.code) == "en") return;
    if (isFixed(index)) {
      EXPECT_EQ(kEnglish[index], text);
    } else {
      EXPECT_NE(kEnglish[index], text);
    }
  });
}

TEST(CatalogueTable, WritesEveryLanguageWithItsOwnLetters) {
  bool beyondAscii[kLocaleCount] = {};
  for (int i = 0; i < kLocaleCount; ++i) {
    for (const char* byte = storedText(i, 0); byte != storedText(i, kCatalogueSize - 1); ++byte)
      beyondAscii[i] = beyondAscii[i] || (*byte & 0x80) != 0;
    EXPECT_EQ(i != 0, beyondAscii[i]) << kRows[i].code;
  }
}

}  // namespace
