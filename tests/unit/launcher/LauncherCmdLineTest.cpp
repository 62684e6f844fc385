// The options of the command line, by what each leaves behind. "-cv:version" stands first in the
// rows, so that no script runs.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "launcher/Launcher.h"
#include "support/ArchiveFixture.h"
#include "support/JVMSupport.h"

namespace {

using Args = std::vector<std::string>;

const char* const kLogNameMissing =
    "A log file name must be specified after the -log option on the command line.\n";
const char* const kInNameMissing =
    "An input file name must follow the '-in' command line option.\n";
const char* const kOrigNameMissing = "Missing original launcher file name.\n";

StringDeque toDeque(const Args& args) {
  StringDeque deque;
  for (const std::string& arg : args) {
    deque.push_back(test::sstr(arg));
  }
  return deque;
}

std::string named(const char* name, const std::string& value) {
  return value.empty() ? "" : std::string(name) + "=" + value + " ";
}

std::string flagged(const char* name, bool isSet) {
  return isSet ? std::string(name) + " " : "";
}

// "CWD" in the place of the current directory in front.
std::string fromHere(const std::string& path) {
  const std::string here = std::filesystem::current_path().string() + "/";
  return path.starts_with(here) ? "CWD/" + path.substr(here.size()) : path;
}

class LauncherCmdLine : public ArchiveTest {
 protected:
  void SetUp() override { beginAnew(); }

  void beginAnew() {
    LauncherTestAccess::resetCommandLine();
    LauncherTestAccess::resetInputFiles();
    PlatformTestAccess::resetOptions();
    useLauncher("a bare stub, without files");
  }

  // What the options have changed, in a fixed order; what was passed on comes last.
  std::string changes() const {
    const std::string original = test::str(Launcher::getOriginalLauncherFileName());
    std::string text = named("log", LauncherTestAccess::logFileName()) +
                       named("orig", original == m_dir / "launcher" ? "" : original) +
                       flagged("delete", PlatformTestAccess::deletesLauncher()) +
                       named("temp", fromHere(PlatformTestAccess::tempDir())) +
                       flagged("silent", PlatformTestAccess::isSilent()) +
                       named("home", fromHere(test::str(Launcher::getUserJavaHome()))) +
                       flagged("console", LauncherTestAccess::showsJavaConsole()) +
                       named("before", test::str(Launcher::getPrependClasspath())) +
                       named("behind", test::str(Launcher::getAppendClasspath()));
    for (const std::string& arg : test::toVector(LauncherTestAccess::passThroughArgs())) {
      text += "[" + arg + "]";
    }
    return text;
  }
};

struct OptionRow {
  const char* name;
  Args args;
  const char* changes;
  const char* out = "";  // behind the version's line
  std::int32_t status = 0;
};

const OptionRow kOptionRows[] = {
    {"nothing", {}, ""},

    {"log", {"-cv:log", "a b"}, "log=a b "},
    {"log, empty", {"-cv:log", "x", "-cv:log", ""}, ""},
    {"log again", {"-cv:log", "x", "-cv:log", "y"}, "log=y "},
    {"log last", {"-cv:log"}, "", kLogNameMissing, -1},
    {"log again, last", {"-cv:log", "x", "-cv:log"}, "log=x ", kLogNameMissing, -1},
    {"log takes an option for its name", {"-cv:log", "-cv:silent"}, "log=-cv:silent "},
    {"log takes itself for its name", {"-cv:log", "-cv:log"}, "log=-cv:log "},
    {"log three times", {"-cv:log", "-cv:log", "-cv:log"}, "log=-cv:log ", kLogNameMissing, -1},

    {"orig", {"-cv:orig", "/cd/setup"}, "orig=/cd/setup delete "},
    {"orig again", {"-cv:orig", "/x", "-cv:orig", "y"}, "orig=y delete "},
    {"orig last", {"-cv:orig"}, "", kOrigNameMissing, -1},
    {"orig again, last", {"-cv:orig", "/x", "-cv:orig"}, "orig=/x delete ", kOrigNameMissing, -1},
    {"orig takes an option", {"-cv:orig", "-silent"}, "orig=-silent delete "},
    {"a missing name does not end the options",
     {"-cv:silent", "x", "-cv:orig"},
     "silent [x]",
     "",
     -1},

    {"tempdir, unseen", {"-cv:tempdir", "/no/such"}, "temp=/no/such "},
    {"tempdir again", {"-cv:tempdir", "/a", "-cv:tempdir", "/b"}, "temp=/b "},
    {"tempdir, relative", {"-cv:tempdir", "../a"}, "temp=CWD/../a "},
    {"tempdir, empty", {"-cv:tempdir", "/a", "-cv:tempdir", ""}, ""},
    {"tempdir last", {"-cv:tempdir"}, ""},
    {"tempdir takes an option", {"-cv:tempdir", "-cv:version"}, "temp=CWD/-cv:version "},

    {"javahome", {"-cv:javahome", "/j"}, "home=/j "},
    {"javahome again", {"-cv:javahome", "/j", "-cv:javahome", "/k"}, "home=/k "},
    {"javahome, relative", {"-cv:javahome", "./j"}, "home=CWD/./j "},
    {"javahome, empty", {"-cv:javahome", "/j", "-cv:javahome", ""}, ""},
    {"javahome last", {"-cv:javahome"}, ""},
    {"javahome takes an option", {"-cv:javahome", "-console"}, "home=CWD/-console "},

    {"class paths", {"-cp:p", "a:b", "-cp:a", "c:d"}, "before=a:b behind=c:d "},
    {"class paths again",
     {"-cp:p", "a", "-cp:p", "b", "-cp:a", "c", "-cp:a", "d"},
     "before=b behind=d "},
    {"class path in front last", {"-cp:p"}, ""},
    {"class path behind last", {"-cp:a"}, ""},
    {"class paths take options",
     {"-cp:p", "-cp:a", "-cp:a", "-cp:p"},
     "before=-cp:a behind=-cp:p "},

    {"silent", {"-cv:silent"}, "silent "},
    {"silent, passed on", {"-silent"}, "silent [-silent]"},
    {"silent, passed on twice", {"-silent", "-silent"}, "silent [-silent][-silent]"},
    {"java console", {"-cv:javaconsole"}, "console "},
    {"console", {"-console"}, "console [-console]"},
    // QUIRK(accessibility-is-console)
    {"accessibility", {"-accessibility"}, "console [-console]"},

    {"version again", {"-cv:version"}, "", CORVANE_VERSION "\n"},
    {"silent hides a later version alone", {"-cv:silent", "-cv:version"}, "silent "},
    {"silent hides later messages", {"-cv:silent", "-cv:log"}, "silent ", "", -1},
    {"messages before silent show", {"-cv:version", "-cv:silent"}, "silent ", CORVANE_VERSION "\n"},
    {"in last", {"-cv:in"}, "", kInNameMissing, -1},

    {"others, in order", {"x", "", "-y", "x"}, "[x][][-y][x]"},
    {"others among options",
     {"a", "-cv:log", "l", "b", "-silent", "c"},
     "log=l silent [a][b][-silent][c]"},
    {"capitals", {"-CV:SILENT", "-Silent", "-cv:Log"}, "[-CV:SILENT][-Silent][-cv:Log]"},
    {"more behind the name", {"-cv:silentx", "-cv:log=x"}, "[-cv:silentx][-cv:log=x]"},
    {"less than the name", {"-cv:silen", "-cv:", "-cp", "-"}, "[-cv:silen][-cv:][-cp][-]"},
    {"blanks around the name", {" -cv:silent", "-cv:silent "}, "[ -cv:silent][-cv:silent ]"},
    {"other dashes", {"--cv:silent", "cv:silent", "/silent"}, "[--cv:silent][cv:silent][/silent]"},
    {"the wizard's forms of ours", {"-log", "x", "-in"}, "[-log][x][-in]"},
};

TEST_F(LauncherCmdLine, EachOptionLeavesItsMark) {
  for (const OptionRow& row : kOptionRows) {
    SCOPED_TRACE(row.name);
    beginAnew();
    Args args = row.args;
    args.insert(args.begin(), "-cv:version");
    std::int32_t status = 4711;
    const std::string out =
        test::captureStdout([&] { status = Launcher::processCmdLine(toDeque(args)); });
    EXPECT_EQ(row.changes, changes());
    EXPECT_EQ(std::string(CORVANE_VERSION "\n") + row.out, out);
    EXPECT_EQ(row.status, status);
  }
}

TEST_F(LauncherCmdLine, AMarkForDeletionOfBeforeDoesNotCount) {
  PlatformImpl::setDeleteLauncher(true);
  test::captureStdout([] { (void)Launcher::processCmdLine(toDeque({"-cv:version"})); });
  EXPECT_FALSE(PlatformTestAccess::deletesLauncher());
}

TEST_F(LauncherCmdLine, LongArgumentsAreTakenWhole) {
  const std::string text(1000000, 'x');
  test::captureStdout([&] {
    (void)Launcher::processCmdLine(
        toDeque({"-cv:version", text, "-cv:javahome", text, "-cv:log", text, "-cp:p", text}));
  });
  EXPECT_EQ("log=" + text + " home=CWD/" + text + " before=" + text + " [" + text + "]", changes());
}

// --- "-cv:extract" ---

struct ExtractRow {
  const char* name;
  std::string bytes;
  bool isCanceled;
  const char* error;
};

// The failure of the index names the index, that of a copy the copy.
TEST_F(LauncherCmdLine, ExtractNamesTheStepThatFails) {
  const std::string whole = test::launcherFileBytes({{3, 1, "a.jar", "x"}});
  const ExtractRow rows[] = {
      {"short file", "1234567", false,
       "Unable to load the launcher file index. Invalid launcher format."},
      {"bad index", test::launcherFileBytes("", test::bigEndian32(1) + "\x09"), false,
       "Unable to load the launcher file index. Invalid file type in file index."},
      {"canceled", whole, true, "Canceled by the user."},
      {"folder missing", test::launcherFileBytes({{3, 1, "none/a.jar", "x"}}), false,
       "Unable to extract embedded files from the launcher. Error writing file = 2 There may not "
       "be enough temporary disk space. Try using -cv:tempdir to use a temporary directory on a "
       "partition with more disk space."},
      {"nothing wrong", whole, false, ""},
  };
  test::writeFile(m_dir / "out/before", "");
  const test::ScopedCurrentDir current(m_dir / "out");
  for (const ExtractRow& row : rows) {
    SCOPED_TRACE(row.name);
    beginAnew();
    useLauncher(row.bytes);
    PlatformTestAccess::setCanceled(row.isCanceled);
    std::string error;
    test::captureStdout(
        [&] { error = errorOf([] { (void)Launcher::processCmdLine(toDeque({"-cv:extract"})); }); });
    EXPECT_EQ(row.error, error);
  }
}

}  // namespace
