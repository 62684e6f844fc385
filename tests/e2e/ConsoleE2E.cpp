// What the user sees: the language, the title, rows of dots, the prompt.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "e2e/LauncherTest.h"
#include "platform/MessageCatalogue.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

constexpr const char* kPreparing = "\nPreparing Java(tm) Virtual Machine...\n";
constexpr const char* kQuestion =
    "Supply the destination directory for the Java Virtual Machine:\n";

class ConsoleRun : public LauncherTest {
 protected:
  void embedTitle(const std::string& title) {
    embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "setup.lsc", "DESC: " + title + "\nCOMMAND: true\n");
  }
  // An installer that does nothing, of so many chunks of extraction.
  void embedInstaller(std::size_t chunks = 1) {
    constexpr std::size_t kChunk = 61439;
    embed(FILE_TYPE_JVM_INSTALLER, 5, "install",
          "#!/bin/sh\nexit 1\n" + std::string(kChunk * (chunks - 1), '#'));
  }
  // Standard input on which nobody ever answers.
  void setMuteStdin() {
    ASSERT_EQ(0, mkfifo(dir("mute").c_str(), 0600));
    setPrepareChild([this] { dup2(open(dir("mute").c_str(), O_RDWR), STDIN_FILENO); });
  }
};

// The table of the language that LANG names, printed as it stands; nothing else chooses it.
TEST_F(ConsoleRun, Languages) {
  struct Row {
    const char* lang;  // null: not set
    int table;
  };
  // QUIRK(hong-kong-reads-english)
  const Row rows[] = {
      {nullptr, 0},        {"", 0},       {"C", 0},           {"POSIX", 0},
      {"xx_YY", 0},        {"zh_HK", 0},  {"zh_HK.Big5", 0},  {"de_DE", 4},
      {"ja_JP.eucJP", 12}, {"no_NO", 15}, {"pt_PT", 17},      {"pt_BR", 18},
      {"pt_BR.UTF-8", 18}, {"zh_CN", 25}, {"zh_TW.Big5", 26},
  };
  setEnv("LC_ALL", "fr_FR");
  setEnv("LANGUAGE", "it");
  embedTitle("Sample");
  embedInstaller();
  embedInstructions({"INITIALIZE_UI", "INSTALL_JVM 2"});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.lang == nullptr ? "not set" : row.lang);
    row.lang == nullptr ? unsetEnv("LANG") : setEnv("LANG", row.lang);
    std::string initializing = storedText(row.table, kCatalogueInitializing);
    initializing.replace(initializing.find("%s"), 2, "Sample");
    EXPECT_EQ("Sample\n\n" + initializing + "\n\n" + storedText(row.table, kCataloguePreparingJVM) +
                  "\n" + storedText(row.table, kCatalogueAskDestination) + "\n\n",
              run().out);
  }
}

TEST_F(ConsoleRun, StubsDifferInTheEncoding) {
  struct Row {
    const char* stub;
    const char* lang;
    const char* wanted;
  };
  const Row rows[] = {
      {CORVANE_STUB, "fr_FR", "Pr\xE9paration"},
      {CORVANE_STUB, "fr_FR.UTF-8", "Pr\xE9paration"},
      {CORVANE_STUB, "nb_NO.UTF-8", "Klargj\xF8r"},
      {CORVANE_STUB_ANY, "fr_FR.UTF-8", "Pr\xC3\xA9paration"},
      {CORVANE_STUB_ANY, "fr_FR.ISO-8859-1", "Pr\xE9paration"},
      {CORVANE_STUB_ANY, "fr_FR.KOI8-R", "Preparing"},
      {CORVANE_STUB_ANY, "ru_RU.KOI8-R", "\xF0\xCF\xC4\xC7\xCF\xD4\xCF\xD7\xCB\xC1"},
      {CORVANE_STUB_ANY, "xx_YY", "Preparing"},
      {CORVANE_STUB_ANY, "nb_NO.UTF-8", "Klargj\xC3\xB8r"},
  };
  embedInstaller();
  embedInstructions({"INSTALL_JVM 2"});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.lang);
    setStub(row.stub);
    setEnv("LANG", row.lang);
    pack();
    const std::string out = run().out;
    EXPECT_EQ(1u, out.find(row.wanted)) << out;
  }
}

// Text and title in one charset.
TEST_F(ConsoleRun, ALineHasOneEncoding) {
  struct Row {
    const char* lang;
    const char* wanted;
  };
  const Row rows[] = {
      {"fr_FR.UTF-8", "Caf\xC3\xA9\n\nInitialisation de Caf\xC3\xA9...\n\n"},
      {"fr_FR.ISO-8859-15", "Caf\xE9\n\nInitialisation de Caf\xE9...\n\n"},
      {"ru_RU.KOI8-R", "Caf\n\n\xE9\xCE\xC9\xC3\xC9\xC1\xCC\xC9\xDA\xC1\xC3\xC9\xD1 Caf...\n\n"},
      {"fr_FR.KOI8-R", "Caf\n\nInitializing Caf...\n\n"},
  };
  setStub(CORVANE_STUB_ANY);
  embedTitle("Caf\\u00e9");
  embedInstructions({"INITIALIZE_UI"});
  for (const Row& row : rows) {
    setEnv("LANG", row.lang);
    EXPECT_EQ(row.wanted, run().out) << row.lang;
  }
}

TEST_F(ConsoleRun, TitlesInTheUsersEncoding) {
  struct Row {
    const char* title;
    const char* lang;
    const char* wanted;
  };
  const Row rows[] = {
      {"Caf\\u00e9 \\u65e5", "C.UTF-8", "Caf\xC3\xA9 \xE6\x97\xA5"},
      {"Caf\\u00e9", "xx_YY.UTF-8", "Caf\xC3\xA9"},
      {"Caf\\u00e9 x", "C", "Caf"},
      {"Caf\xC3\xA9 x", "C.UTF-8", "Caf"},
      {"\\u65e5", "C", ""},
      {"100%s \\u0041", "C", "100%s A"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.title + std::string(" in ") + row.lang);
    forgetFiles();
    embedTitle(row.title);
    embedInstructions({"INITIALIZE_UI"});
    pack();
    setEnv("LANG", row.lang);
    std::string wanted = row.wanted;
    wanted.append("\n\nInitializing ").append(row.wanted).append("...\n\n");
    EXPECT_EQ(wanted, run().out);
  }
}

// QUIRK(progress-counts-double), and the end of the run sets the progress to 100.
TEST_F(ConsoleRun, RowsOfDots) {
  struct Row {
    std::size_t chunks;
    const char* command;
    std::vector<std::string> args;
    std::string wanted;
  };
  const std::string preparing = kPreparing;
  const std::string row35 = std::string(35, '.') + "\n";
  const Row rows[] = {
      {34, "INSTALL_JVM 1", {}, "Foo\n" + preparing + std::string(34, '.') + "\n"},
      {35, "INSTALL_JVM 1", {}, "Foo\n" + preparing + row35},
      {36, "INSTALL_JVM 1", {}, "Foo\n" + preparing + row35 + "."},
      {71, "INSTALL_JVM 1", {}, "Foo\n" + preparing + row35 + row35 + "."},
      {36, "INSTALL_JVM 0", {}, "Foo\n"},
      {36, "INSTALL_JVM 1", {"-cv:silent"}, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::to_string(row.chunks) + " " + row.command);
    forgetFiles();
    embedTitle("Foo");
    embedInstaller(row.chunks);
    embedInstructions({row.command});
    pack();
    EXPECT_EQ(row.wanted, run(row.args).out);
  }
}

TEST_F(ConsoleRun, ASignalEndsThePrompt) {
  if (!fs::exists("/proc/self/stat")) {
    GTEST_SKIP() << "cannot see when the launcher waits";
  }
  setMuteStdin();
  embedInstaller();
  embedInstructions({"INSTALL_JVM 2", "JMP0 @N1@ none", "ILAUNCH 99 0", ":none"});
  const pid_t pid = start({"-cv:tempdir", tempDir()});
  ASSERT_TRUE(waitForText(dir("out.txt"), kQuestion));
  ASSERT_TRUE(waitUntilAsleep(pid));
  kill(pid, SIGINT);
  const Result result = finish(pid);
  EXPECT_EQ(-SIGINT, result.status);
  EXPECT_EQ(kPreparing + std::string(kQuestion) + "Canceled by the user.\n", result.out);
}

TEST_F(ConsoleRun, WhoHasCanceledTheWizardIsNotWaitedFor) {
  setMuteStdin();
  embedSetup(": >\"$RECORD\"; trap 'exit 6' INT; while :; do /bin/sleep 0.05; done");
  setEnv("PATH", dir("none"));  // no further candidate
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstaller();
  embedInstructions({"FIND_JVM 0 1", "LAUNCH @S2@ 0", "INSTALL_JVM 2", "JMP0 @N1@ none",
                     "ILAUNCH 99 0", ":none"});
  const pid_t pid = start({"-cv:tempdir", tempDir()});
  ASSERT_TRUE(waitForFile(dir("record.txt")));
  kill(pid, SIGINT);
  const Result result = finish(pid);
  EXPECT_EQ(6, result.status);
  EXPECT_EQ("Sample\n" + std::string(kPreparing) + kQuestion + "\n", result.out);
}

}  // namespace
}  // namespace e2e
