// A run: what `process` records, how it tells a failure, the status of the script, the clean-up.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "launcher/Launcher.h"
#include "support/ArchiveFixture.h"
#include "support/JVMSupport.h"

namespace {

using Args = std::vector<std::string>;

class LauncherRun : public ArchiveTest {
 protected:
  void SetUp() override { beginAnew(); }

  void beginAnew() {
    LauncherTestAccess::resetCommandLine();
    LauncherTestAccess::resetInputFiles();
    PlatformTestAccess::resetOptions();
    PlatformImpl::hideUI(0);  // what is left on the console are messages
  }

  // Runs a launcher file of these bytes; `out` is what it shows.
  std::int32_t process(const std::string& bytes, const Args& args, std::string& out) {
    StringDeque deque;
    for (const std::string& arg : args) {
      deque.push_back(test::sstr(arg));
    }
    const SString path = test::sstr(test::writeFile(m_dir / "launcher", bytes));
    std::int32_t status = 4711;
    out = test::captureStdout([&] { status = Launcher::process(deque, path); });
    return status;
  }

  static std::string launcherWith(const std::string& script) {
    return test::launcherFileBytes({{0, 1, "setup.ins", "INSTRUCTIONS:\n" + script + "/:\n"}});
  }
};

TEST_F(LauncherRun, RecordsPathAndArguments) {
  const Args args{"-cv:version", "-cv:log", m_dir / "log", "", "-silent", "last one", "-cp:p"};
  std::string out;
  EXPECT_EQ(0, process("stub", args, out));
  EXPECT_EQ(CORVANE_VERSION "\n", out);
  EXPECT_EQ(m_dir / "launcher", test::str(Launcher::getLauncherFileName()));
  EXPECT_EQ(m_dir / "launcher", test::str(Launcher::getOriginalLauncherFileName()));
  EXPECT_EQ(args, test::toVector(LauncherTestAccess::args()));
  EXPECT_EQ((Args{"", "-silent", "last one"}),
            test::toVector(LauncherTestAccess::passThroughArgs()));
}

struct ScriptRow {
  const char* name;
  std::string script;
  std::int32_t status;
  const char* error;  // as shown and logged; empty: none
};

const ScriptRow kScriptRows[] = {
    {"nothing to do", "// nothing\n", 0, ""},
    {"no lines", "", 0, ""},
    {"an error in the first line", "NONSENSE\n", -1,
     "Error in instructions. Invalid command (NONSENSE).  Line number (1)"},
    {"an error at line 12", "//\n//\n//\n//\n//\n//\n//\n//\n//\n//\n//\nUnknown\n", -1,
     "Error in instructions. Invalid command (Unknown).  Line number (12)"},
    {"an operation that fails passes unchanged", "//\nINSTALL_JVM 0\n", -1,
     "No JVM installer was included in the launcher."},
    {"an operation that fails silently", "ILAUNCH 1 0\n", -1, ""},
};

TEST_F(LauncherRun, TheScriptsStatusAndErrors) {
  for (const ScriptRow& row : kScriptRows) {
    SCOPED_TRACE(row.name);
    beginAnew();
    std::string out;
    EXPECT_EQ(row.status, process(launcherWith(row.script), {}, out));
    EXPECT_EQ(*row.error == '\0' ? "" : row.error + std::string("\n"), out);
  }
}

TEST_F(LauncherRun, WithoutAScriptNothingIsSaid) {
  for (const std::string& bytes :
       {std::string("a bare stub"), test::launcherFileBytes({{3, 1, "a.jar", ""}})}) {
    beginAnew();
    std::string out;
    EXPECT_EQ(-1, process(bytes, {}, out));
    EXPECT_EQ("", out);
  }
}

struct FailureRow {
  const char* name;
  Args args;  // LOG stands for the log file
  const char* out;
  const char* log;
};

const FailureRow kFailureRows[] = {
    {"without a log", {}, "Unable to load the launcher file index. Invalid launcher format.\n", ""},
    {"with a log",
     {"-cv:log", "LOG"},
     "Unable to load the launcher file index. Invalid launcher format.\n",
     "------------------\n"
     "ERROR: Unable to load the launcher file index. Invalid launcher format.\n"},
    {"silent",
     {"-cv:log", "LOG", "-cv:silent"},
     "",
     "------------------\n"
     "ERROR: Unable to load the launcher file index. Invalid launcher format.\n"},
    {"extract",
     {"-cv:log", "LOG", "-cv:extract"},
     "Unable to load the launcher file index. Invalid launcher format.\n",
     "------------------\n"
     "ERROR: Unable to load the launcher file index. Invalid launcher format.\n"},
    {"options behind the failure do not count",
     {"-cv:extract", "-cv:log", "LOG", "-cv:silent"},
     "Unable to load the launcher file index. Invalid launcher format.\n",
     ""},
    {"the run's failure follows that of an option",
     {"-cv:log", "LOG", "-cv:orig"},
     "Missing original launcher file name.\n"
     "Unable to load the launcher file index. Invalid launcher format.\n",
     "------------------\n"
     "ERROR: Unable to load the launcher file index. Invalid launcher format.\n"},
};

TEST_F(LauncherRun, AFailureIsShownAndLoggedOnce) {
  for (const FailureRow& row : kFailureRows) {
    SCOPED_TRACE(row.name);
    beginAnew();
    const std::string log = test::writeFile(m_dir / "log", "");
    Args args = row.args;
    std::replace(args.begin(), args.end(), std::string("LOG"), log);
    std::string out;
    EXPECT_EQ(-1, process("short", args, out));
    EXPECT_EQ(row.out, out);
    EXPECT_EQ(row.log, test::readFile(log));
  }
}

struct TranslatedRow {
  const char* name;
  Args args;                             // DIR stands for the scratch folder
  std::vector<MessageIdentifier> texts;  // in the order of `out`, which has a % for each
  const char* out;
};

const TranslatedRow kTranslatedRows[] = {
    {"log name", {"-cv:version", "-cv:log"}, {MSG_LOG_FILE_NAME_MISSING}, CORVANE_VERSION "\n%\n"},
    {"input file name", {"-cv:in"}, {MSG_INPUT_FILE_NAME_MISSING}, "%\n"},
    {"input file",
     {"-cv:in", "DIR/none"},
     {MSG_INPUT_FILE_LOAD_FAILED, MSG_INPUT_FILE_OPEN_FAILED, MSG_INPUT_FILE_OPEN_FAILED},
     "%%\n%\n"},
    {"index", {"-cv:extract"}, {MSG_FILE_INDEX_LOAD_FAILED}, "%Invalid launcher format.\n"},
    {"original name is English in every language",
     {"-cv:version", "-cv:orig"},
     {},
     CORVANE_VERSION "\nMissing original launcher file name.\n"},
};

TEST_F(LauncherRun, TextsAreThoseOfTheUsersLanguage) {
  const std::string english = PlatformImpl::getMessageText(MSG_INPUT_FILE_OPEN_FAILED).c_str();
  const test::ScopedEnvironment german("LANG", "de_DE");
  ASSERT_NE(english, PlatformImpl::getMessageText(MSG_INPUT_FILE_OPEN_FAILED).c_str());
  for (const TranslatedRow& row : kTranslatedRows) {
    SCOPED_TRACE(row.name);
    beginAnew();
    std::string wanted = row.out;
    for (const MessageIdentifier text : row.texts) {
      wanted.replace(wanted.find('%'), 1, PlatformImpl::getMessageText(text).c_str());
    }
    Args args = row.args;
    args.back() = test::replaced(args.back(), "DIR", m_dir.path());
    std::string out;
    process("short", args, out);
    EXPECT_EQ(wanted, out);
  }
}

TEST_F(LauncherRun, TheEndCleansUp) {
  for (const bool isCopy : {false, true}) {
    SCOPED_TRACE(isCopy);
    beginAnew();
    const std::string launcher = test::writeFile(m_dir / "copy/launcher", "");
    LauncherTestAccess::setLauncherFileName(launcher);
    PlatformImpl::setSystemTempDir(test::sstr(m_dir.path()));
    PlatformImpl::setDeleteLauncher(isCopy);
    {
      const Launcher cleanUpAtEnd;
      PlatformImpl::createTempFile();
      test::writeFile(test::str(PlatformImpl::createTempSubDirectory()) + "/deep/file", "");
      EXPECT_EQ(6u, test::listTree(m_dir.path()).size());
    }
    EXPECT_EQ(isCopy ? Args{} : (Args{"copy/", "copy/launcher"}), test::listTree(m_dir.path()));
  }
}

}  // namespace
