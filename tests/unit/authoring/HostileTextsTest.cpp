// `check` reads any text: it neither crashes nor takes long, and each finding stands in a line that
// there is.
#include <algorithm>
#include <random>

#include "support/Valgrind.h"
#include "unit/authoring/Mistakes.h"

namespace {

using mistakes::Texts;

// What means something to one of the parsers, in any order.
const std::vector<std::string> kPieces = {"\n",
                                          "\n",
                                          "\n",
                                          " ",
                                          ":",
                                          "/:\n",
                                          "\"",
                                          "\"\"",
                                          "@",
                                          "%",
                                          "#",
                                          "(",
                                          ")",
                                          ",",
                                          "=",
                                          "$",
                                          "'",
                                          "\\",
                                          "&",
                                          "//",
                                          "// ",
                                          "...",
                                          "17",
                                          "1.8",
                                          "+",
                                          ">=",
                                          "~",
                                          "*",
                                          "\r",
                                          "\t",
                                          "\xEF\xBB\xBF",
                                          "\xC2\xA0",
                                          "\xFF",
                                          std::string(1, '\0'),
                                          "INSTRUCTIONS:",
                                          "FIND_JVM 1 0\n",
                                          "LAUNCH @S2@ 1\n",
                                          "LAUNCH @S1@ 1\n",
                                          "JMP0 @N1@ a\n",
                                          "GOTO a\n",
                                          "GOTO a@S3@\n",
                                          ":a\n",
                                          ":a1\n",
                                          "SET S1 = ",
                                          "SET N1 = ",
                                          "SET S1 = @S1@@S1@x\n",
                                          "@S1@",
                                          "@N1@",
                                          "INSTALL_JVM 1\n",
                                          "VERIFY 0 0 17\n",
                                          "ILAUNCH 17 0\n",
                                          "EXECUTE_LAUNCHER 0\n",
                                          "COMMAND:",
                                          "DESC:",
                                          "ARCHIVE:",
                                          "%CP%(",
                                          "%CP%()",
                                          "%REPLACE%(\"a\",\"b\",\"",
                                          "%IF_EXISTS%(\"",
                                          "@JVM_HOME@",
                                          "@A@",
                                          "#HOME#",
                                          "JVM_EXE:",
                                          "JVM_PROPERTIES:",
                                          "java.version",
                                          "java.specification.version = ",
                                          "os.arch = ",
                                          "PATH_HINT:",
                                          "PLATFORM_HINT:",
                                          "SEARCH_ALL: 1\n",
                                          "CLASSPATH:",
                                          "CLASSPATH_SEPARATOR:",
                                          "SYSTEM:",
                                          "REQ_JAVA_ARGS: @A@\n",
                                          "A: @B@\n",
                                          "B: @A@\n",
                                          "SET_ENV_FOR_WIZARD:",
                                          "USE_CP_ENV_VAR: 1\n",
                                          "CP_ENV_VAR:",
                                          "MESSAGE:",
                                          "exec ",
                                          "java ",
                                          "-cp ",
                                          "-D",
                                          "bin/java",
                                          "/usr",
                                          ".x"};

class RandomTexts {
 public:
  std::string next(const char* beginning) {
    std::string text = beginning;
    for (auto pieces = m_random() % 40; pieces > 0; --pieces) {
      text += kPieces[m_random() % kPieces.size()];
    }
    return text;
  }

 private:
  std::mt19937 m_random{1};
};

// Each finding names a line of a file, or a file as a whole.
void expectPlaces(const Texts& texts) {
  for (const std::string& finding : mistakes::findingsOf(texts)) {
    const std::size_t colon = finding.find(':');
    const std::size_t severity = finding.find(": ");
    ASSERT_LE(colon, severity) << finding;
    if (colon < severity) {
      EXPECT_GE(std::stol(finding.substr(colon + 1)), 1) << finding;
    }
  }
}

constexpr int kSetups = 1000;

TEST(HostileTexts, OfAnyPiecesAreRead) {
  RandomTexts random;
  for (int i = 0; i < kSetups; ++i) {
    Texts texts;
    texts.script = random.next("INSTRUCTIONS:\n");
    texts.launchScript = random.next("COMMAND: exec ");
    texts.jvmFiles = {random.next(""), random.next("JVM_EXE: bin/java\nJVM_PROPERTIES:\n")};
    texts.message = random.next("");
    SCOPED_TRACE(texts.script + texts.launchScript + texts.jvmFiles[0] + texts.jvmFiles[1]);
    expectPlaces(texts);
    if (HasFatalFailure()) {
      return;
    }
  }
}

// --- Large texts: what is done for each line, name or way must not be done for each of all ---

std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) {
    std::string copy = text;
    for (std::size_t sign = copy.find('?'); sign != std::string::npos; sign = copy.find('?')) {
      copy.replace(sign, 1, std::to_string(i));
    }
    all += copy;
  }
  return all;
}

struct LargeRow {
  const char* name;
  Texts texts;
};

// The sanitizers' slow build looks at the memory, the other at the time.
#ifdef __SANITIZE_ADDRESS__
constexpr int kMany = 600;
constexpr std::size_t kLong = 200'000;
#else
constexpr int kMany = 3'000;
constexpr std::size_t kLong = 1'000'000;
#endif

std::vector<LargeRow> largeRows() {
  const std::string begin = "INSTRUCTIONS:\n";
  const std::string end = "/:\n";
  return {
      {"jumps to labels that are not there",
       {.script = begin + repeated(kMany, "GOTO a?\n:b?\n") + end}},
      {"jumps to anywhere",
       {.script = begin + "FIND_JVM 0 0\n" + repeated(kMany, ":a?\nGOTO a@S1@\n") + end}},
      {"ways that double",
       {.script = begin + "//\n" +
                  repeated(kMany, "FIND_JVM 0 0\nSET S? = @N1@@N2@\nSET N2 = @N1@\n") + end}},
      {"texts that double",
       {.script = begin + "SET S1 = x\n:a\n" + repeated(100, "SET S1 = @S1@@S1@\n") +
                  "SET S2 = @S2@x\nJMP0 @N1@ a\n" + end}},
      {"a loop over a long line",
       {.script = begin + "//\n:a\nSET S1 = @S1@x\nLAUNCH " + std::string(kLong, 'x') +
                  " 1\nGOTO a\n" + end}},
      {"names that nothing sets", {.launchScript = "COMMAND: " + repeated(kMany, "@A?@ #B?# ")}},
      {"calls in calls",
       {.launchScript = "COMMAND: " + repeated(kMany, "%IF_EXISTS%(\"A?\",\"@B?@\")")}},
      {"percent signs", {.launchScript = "COMMAND: " + std::string(kLong, '%')}},
      {"a chain of tags that ends in a circle",
       {.jvmFiles = {repeated(kMany, "A?: @A1?@@A2?@\n") + "REQ_JAVA_ARGS: @A0@\n" +
                     repeated(kMany, "B?: @B0@\n")}}},
      {"a tag again and again", {.jvmFiles = {repeated(kMany, "JVM_EXE: x?\n")}}},
      {"misspelt tags", {.jvmFiles = {repeated(kMany, "JVM_EX?: x\n")}}},
      {"properties",
       {.jvmFiles = {"JVM_PROPERTIES:\n" + repeated(kMany, "java.versio? >= 1?\n") + end}}},
      {"a block in a block", {.jvmFiles = {repeated(kMany, "PATH_HINT:\n")}}},
      {"quotes", {.jvmFiles = {"A: " + std::string(kLong, '"') + "\n"}}},
  };
}

TEST(HostileTexts, OfAnySizeAreReadInNoTime) {
  if (test::isUnderValgrind()) {
    GTEST_SKIP() << "under valgrind nothing takes no time";
  }
  for (const LargeRow& row : largeRows()) {
    SCOPED_TRACE(row.name);
    expectPlaces(row.texts);
  }
}

}  // namespace
