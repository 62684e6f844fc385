#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/FakeJVM.h"
#include "jvm/JVMFile.h"
#include "jvm/JVMMatch.h"
#include "jvm/VerifyClass.h"
#include "platform/TrialLimits.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"
#include "support/Valgrind.h"

namespace {

using test::FakeJVM;
using test::sstr;
using test::str;

// --- The cast ---

struct CastRow {
  const char* name;
  FakeJVM kind;
  bool wanted;
  std::string wantedError = "";  // the error line of the log
};

constexpr const char* kNoOutputAtAll = "ERROR: Invalid magic value: ";

const CastRow kCast[] = {
    {"right values", FakeJVM::RightValues, true},
    {"wrong values", FakeJVM::WrongValues, false},
    {"banner first", FakeJVM::BannerFirst, true},
    {"no magic line", FakeJVM::NoMagicLine, false, "ERROR: Invalid magic value: Fake Vendor"},
    {"blank behind the magic number", FakeJVM::MagicTrailingBlank, false,
     "ERROR: Invalid magic value: Fake Vendor"},
    {"blank before the magic number", FakeJVM::MagicLeadingBlank, false,
     "ERROR: Invalid magic value: Fake Vendor"},
    {"lenient-verify-output: magic line alone", FakeJVM::MagicOnly, true},
    {"lenient-verify-output: one value of two", FakeJVM::OneValueOnly, true},
    {"carriage returns", FakeJVM::CarriageReturns, true},
    {"no final newline", FakeJVM::NoFinalNewline, true},
    {"more lines", FakeJVM::MoreLines, true},
    {"status 1 is not looked at", FakeJVM::ExitOneAfterAll, true},
    {"right lines on standard error", FakeJVM::OnStandardError, false, kNoOutputAtAll},
    {"no output", FakeJVM::NoOutput, false, kNoOutputAtAll},
    {"killed", FakeJVM::KilledBySignal, false, "ERROR: Invalid magic value: starting"},
    {"killed after the right lines", FakeJVM::KilledAfterAll, true},
    {"much output", FakeJVM::MuchOutput, true},
    {"not executable", FakeJVM::NotExecutable, false, kNoOutputAtAll},
    {"a folder", FakeJVM::Directory, false, kNoOutputAtAll},
    {"wrong architecture", FakeJVM::WrongArchitecture, false, kNoOutputAtAll},
};

const test::Tags kRequirements = {
    {"DESC", {"Fake Java"}},
    {"JVM_EXE", {"bin/java"}},
    {"JVM_PROPERTIES", {"java.version=17...", "java.vendor=Fake Vendor"}},
    {"CLASSPATH", {"-cp "}},
    {"CLASSPATH_SEPARATOR", {":"}},
};

// A jvm file of these tags, tested in a folder that is also the launcher's.
class VerifyTest : public testing::Test {
 protected:
  VerifyTest() {
    LauncherTestAccess::setLauncherFileName(m_dir / "setup");
    LauncherTestAccess::setPurpose(1);
  }

  std::string dir() const { return m_dir.path(); }
  std::string takeLog() { return test::replaced(m_log.take(), dir(), "DIR"); }

  test::TempDir m_dir;
  test::LogCapture m_log;
};

std::string errorLine(const std::string& log) {
  const std::size_t begin = log.find("ERROR: ");
  return begin == std::string::npos ? "" : log.substr(begin, log.find('\n', begin) - begin);
}

TEST_F(VerifyTest, AcceptsAndRefusesTheCast) {
  int number = 0;
  for (const CastRow& row : kCast) {
    SCOPED_TRACE(row.name);
    const std::string home = test::makeFakeJVM(m_dir / std::to_string(++number), row.kind);
    TagFile tags;
    test::addTags(tags, kRequirements);
    const auto match = JVMFile(tags).verify(sstr(home), {"\"x.jar\"", "\"Verify\""});
    EXPECT_EQ(row.wanted, match != nullptr);
    const std::string log = takeLog();
    EXPECT_EQ(row.wantedError, errorLine(log));
    EXPECT_EQ(row.wanted, log.find("Found matching JVM at DIR/") != std::string::npos);
    EXPECT_EQ(home, str(tags.getTagValue("JVM_HOME", 0)));
  }
}

TEST_F(VerifyTest, RefusesAnExecutableThatIsNotThere) {
  for (const FakeJVM kind : {FakeJVM::Missing, FakeJVM::DanglingLink}) {
    const std::string home = test::makeFakeJVM(m_dir / "jdk", kind);
    TagFile tags;
    test::addTags(tags, kRequirements);
    EXPECT_EQ(nullptr, JVMFile(tags).verify(sstr(home), {"\"x.jar\"", "\"Verify\""}));
    EXPECT_EQ(
        "Verifying JVM at DIR/jdk/bin/java\n   for JVM: Fake Java\n"
        "DIR/jdk/bin/java does not exist\n",
        takeLog());
    EXPECT_EQ(0, tags.getTagValueCount("JVM_HOME"));
  }
}

// --- One candidate, step by step ---

struct VerifyRow {
  const char* name;
  test::Tags tags;
  std::string home;
  std::string classpath = "";
  std::string verifyClass;
  bool wanted = false;
  std::string wantedCall;  // the arguments that the JVM got; empty: it was not run
  std::string wantedLog;   // "OUT" stands for the log of the JVM's output
};

const char kOut[] =
    "Output from the launch script execution\nStdOut:\n1739021872\n17.0.2\nFake Vendor\n\n"
    "ErrOut:\n\n";

const VerifyRow kVerifies[] = {
    {.name = "as usual",
     .tags = kRequirements,
     .home = "DIR/jdk",
     .classpath = "\"DIR/v.jar\"",
     .verifyClass = "\"Verify\"",
     .wanted = true,
     .wantedCall = "[-cp][DIR/v.jar][Verify][java.version][java.vendor]",
     .wantedLog =
         "Verifying JVM at DIR/jdk/bin/java\n   for JVM: Fake Java\n"
         "Executing launch script command: \"DIR/jdk/bin/java\" -cp \"DIR/v.jar\"   \"Verify\" "
         "java.version java.vendor in working directory DIR\nOUT"
         "Found matching JVM at DIR/jdk\n"},
    {.name = "home ends with a separator",
     .tags = kRequirements,
     .home = "DIR/jdk/",
     .classpath = "\"v.jar\"",
     .verifyClass = "\"Verify\"",
     .wanted = true,
     .wantedCall = "[-cp][v.jar][Verify][java.version][java.vendor]",
     .wantedLog =
         "Verifying JVM at DIR/jdk/bin/java\n   for JVM: Fake Java\n"
         "Executing launch script command: \"DIR/jdk/bin/java\" -cp \"v.jar\"   \"Verify\" "
         "java.version java.vendor in working directory DIR\nOUT"
         "Found matching JVM at DIR/jdk/\n"},
    {.name = "home with a blank",
     .tags = kRequirements,
     .home = "DIR/a jdk",
     .classpath = "\"v 1.jar\"",
     .verifyClass = "\"Verify\"",
     .wanted = true,
     .wantedCall = "[-cp][v 1.jar][Verify][java.version][java.vendor]",
     .wantedLog =
         "Verifying JVM at DIR/a jdk/bin/java\n   for JVM: Fake Java\n"
         "Executing launch script command: \"DIR/a jdk/bin/java\" -cp \"v 1.jar\"   \"Verify\" "
         "java.version java.vendor in working directory DIR\nOUT"
         "Found matching JVM at DIR/a jdk\n"},
    {.name = "no class path, no class",
     .tags = kRequirements,
     .home = "DIR/jdk",
     .verifyClass = "",
     .wanted = true,
     .wantedCall = "[java.version][java.vendor]",
     .wantedLog =
         "Verifying JVM at DIR/jdk/bin/java\n   for JVM: Fake Java\n"
         "Executing launch script command: \"DIR/jdk/bin/java\"     java.version java.vendor"
         " in working directory DIR\nOUT"
         "Found matching JVM at DIR/jdk\n"},
    {.name = "required arguments",
     .tags = {{"DESC", {"J"}},
              {"JVM_EXE", {"bin/java"}},
              {"JVM_PROPERTIES", {"a=1739021872..."}},
              {"REQ_JAVA_ARGS", {"-Xint -ea"}}},
     .home = "DIR/jdk",
     .classpath = "\"v.jar\"",
     .verifyClass = "Verify",
     .wantedCall = "[v.jar][-Xint][-ea][Verify][a]",
     .wantedLog =
         "Verifying JVM at DIR/jdk/bin/java\n   for JVM: J\n"
         "Executing launch script command: \"DIR/jdk/bin/java\" \"v.jar\"  -Xint -ea Verify a"
         " in working directory DIR\nOUT"},
    {.name = "blanks around the parts of a requirement",
     .tags = {{"JVM_EXE", {"bin/java"}},
              {"JVM_PROPERTIES", {" java.version\t = \t17.0.2 ", "b=Fake Vendor"}}},
     .home = "DIR/jdk",
     .verifyClass = "Verify",
     .wanted = true,
     .wantedCall = "[Verify][java.version][b]",
     .wantedLog = "Verifying JVM at DIR/jdk/bin/java\n   for JVM: \n"
                  "Executing launch script command: \"DIR/jdk/bin/java\"    Verify java.version b"
                  " in working directory DIR\nOUT"
                  "Found matching JVM at DIR/jdk\n"},
    {.name = "value with an equal sign",
     .tags = {{"JVM_EXE", {"bin/java"}}, {"JVM_PROPERTIES", {"a=17.0.2", "b=Fake=Vendor"}}},
     .home = "DIR/jdk",
     .verifyClass = "Verify",
     .wantedCall = "[Verify][a][b]",
     .wantedLog = "Verifying JVM at DIR/jdk/bin/java\n   for JVM: \n"
                  "Executing launch script command: \"DIR/jdk/bin/java\"    Verify a b"
                  " in working directory DIR\nOUT"},
    {.name = "line without an equal sign is skipped",
     .tags = {{"JVM_EXE", {"bin/java"}},
              {"JVM_PROPERTIES", {"a=17...", "java.vendor", "b=Fake Vendor"}}},
     .home = "DIR/jdk",
     .verifyClass = "Verify",
     .wanted = true,
     .wantedCall = "[Verify][a][b]",
     .wantedLog = "Verifying JVM at DIR/jdk/bin/java\n   for JVM: \n"
                  "WARNING: Invalid JVM_PROPERTIES setting (java.vendor) in JVM File \n"
                  "Executing launch script command: \"DIR/jdk/bin/java\"    Verify a b"
                  " in working directory DIR\nOUT"
                  "Found matching JVM at DIR/jdk\n"},
    {.name = "requirement without a name",
     .tags = {{"JVM_EXE", {"bin/java"}}, {"JVM_PROPERTIES", {"=17.0.2", "b="}}},
     .home = "DIR/jdk",
     .verifyClass = "Verify",
     .wantedCall = "[Verify][b]",
     .wantedLog = "Verifying JVM at DIR/jdk/bin/java\n   for JVM: \n"
                  "Executing launch script command: \"DIR/jdk/bin/java\"    Verify  b"
                  " in working directory DIR\nOUT"},
    {.name = "no requirements: the magic line alone counts",
     .tags = {{"JVM_EXE", {"bin/java"}}},
     .home = "DIR/jdk",
     .verifyClass = "Verify",
     .wanted = true,
     .wantedCall = "[Verify]",
     .wantedLog = "Verifying JVM at DIR/jdk/bin/java\n   for JVM: \n"
                  "Executing launch script command: \"DIR/jdk/bin/java\"    Verify in working "
                  "directory DIR\nOUT"
                  "Found matching JVM at DIR/jdk\n"},
    {.name = "no executable named",
     .tags = {{"JVM_PROPERTIES", {"a=b"}}},
     .home = "DIR/jdk",
     .verifyClass = "Verify",
     .wantedCall = "",
     .wantedLog = ""},
    {.name = "no home",
     .tags = kRequirements,
     .home = "",
     .verifyClass = "Verify",
     .wantedCall = "",
     .wantedLog = ""},
};

TEST_F(VerifyTest, RunsTheVerifyClass) {
  for (const VerifyRow& row : kVerifies) {
    SCOPED_TRACE(row.name);
    const test::TempDir homes;
    const auto here = [&](const std::string& text) {
      return test::replaced(text, "DIR", homes.path());
    };
    LauncherTestAccess::setLauncherFileName(homes / "setup");
    for (const char* name : {"jdk", "a jdk"}) {
      test::makeFakeJVM(homes / name, FakeJVM::RightValues);
    }
    TagFile tags;
    test::addTags(tags, row.tags);
    const auto match = JVMFile(tags).verify(sstr(here(row.home)),
                                            {sstr(here(row.classpath)), sstr(row.verifyClass)});
    EXPECT_EQ(here(test::replaced(row.wantedLog, "OUT", kOut)), m_log.take());
    ASSERT_EQ(row.wanted, match != nullptr);
    if (match != nullptr) {
      EXPECT_EQ(here(row.home), str(match->getJVMHome()));
      EXPECT_FALSE(match->isJVMTemporary());
      EXPECT_EQ(&tags, &match->getTagFile());
    }
    std::vector<std::string> calls = test::callsOfFakeJVM(homes / "jdk");
    for (const std::string& call : test::callsOfFakeJVM(homes / "a jdk")) {
      calls.push_back(call);
    }
    ASSERT_EQ(row.wantedCall.empty() ? 0u : 1u, calls.size());
    EXPECT_EQ(here(row.wantedCall), calls.empty() ? "" : calls[0]);
  }
}

// --- What the class-path function cannot read: class paths without quotes at both ends ---

struct BadClasspathRow {
  const char* name;
  const char* classpath;
  const char* verifyClass;
  std::string wantedError;     // up to the position
  std::size_t wantedPosition;  // behind the home
  std::string wantedEnd;       // behind the position
  std::string wantedLog;       // behind the opening lines
};

const char kScriptError[] = "LauncherException: Launch script error: ";

const BadClasspathRow kBadClasspaths[] = {
    {.name = "no quotes",
     .classpath = "v.jar",
     .verifyClass = "Verify",
     .wantedError = std::string(kScriptError) + "Expected string arg. (near character ",
     .wantedPosition = 18,
     .wantedEnd = ")",
     .wantedLog =
         "Launch command:\n\"DIR/jdk/@JVM_EXE@\" %CP%(v.jar)  @REQ_JAVA_ARGS@ Verify java.version "
         "java.vendor\n"},
    {.name = "quote at the end only",
     .classpath = "v.jar\"",
     .verifyClass = "\"Verify\"",
     .wantedError = std::string(kScriptError) + "Expected string arg. (near character ",
     .wantedPosition = 18,
     .wantedEnd = ")",
     .wantedLog =
         "Launch command:\n\"DIR/jdk/@JVM_EXE@\" %CP%(v.jar\")  @REQ_JAVA_ARGS@ \"Verify\" "
         "java.version java.vendor\n"},
    {.name = "quote at the beginning only: the class's first one ends it",
     .classpath = "\"v.jar",
     .verifyClass = "\"Verify\"",
     .wantedError = std::string(kScriptError) + "Expected right parenthesis. (near character ",
     .wantedPosition = 44,
     .wantedEnd = ")",
     .wantedLog =
         "Launch command:\n\"DIR/jdk/@JVM_EXE@\" %CP%(\"v.jar)  @REQ_JAVA_ARGS@ \"Verify\" "
         "java.version java.vendor\n"},
    {.name = "quote at the beginning only, class without quotes",
     .classpath = "\"v.jar",
     .verifyClass = "Verify",
     .wantedError = "LauncherException: Expected double quote to end argument near ",
     .wantedPosition = 19,
     .wantedEnd = "",
     .wantedLog = ""},
};

TEST_F(VerifyTest, PassesErrorsOfTheTemplateOn) {
  const std::string home = test::makeFakeJVM(m_dir / "jdk", FakeJVM::RightValues);
  for (const BadClasspathRow& row : kBadClasspaths) {
    SCOPED_TRACE(row.name);
    TagFile tags;
    test::addTags(tags, kRequirements);
    JVMFile jvm(tags);
    EXPECT_EQ(row.wantedError + std::to_string(home.size() + row.wantedPosition) + row.wantedEnd,
              test::outcome([&] {
                (void)jvm.verify(sstr(home), {row.classpath, row.verifyClass});
                return SString("accepted");
              }));
    EXPECT_EQ("Verifying JVM at DIR/jdk/bin/java\n   for JVM: Fake Java\n" + row.wantedLog,
              takeLog());
  }
}

const char* const kOddHomes[] = {
    "a%b",  "a%CP%()b", "a@b", "a@NONE@b", "a#b#c",    "a#b",        "a$b",
    "a`b`", "a\"b",     "a;b", "a\\b\\",   "it's a b", "%@#$`\"'\\", "\xFF*?[",
};

TEST_F(VerifyTest, AcceptsAHomeOfAnyName) {
  for (const char* const name : kOddHomes) {
    SCOPED_TRACE(name);
    const std::string home = m_dir / name;
    test::writeScript(home + "/bin/java", "#!/bin/sh\necho 1739021872\n");
    TagFile tags;
    test::addTags(tags, kRequirements);
    EXPECT_NE(nullptr, JVMFile(tags).verify(sstr(home), {"", ""}));
    EXPECT_NE(std::string::npos, takeLog().find("Executing launch script command: \"DIR/" +
                                                std::string(name) + "/bin/java\" "));
  }
}

// More than any system passes on: the shell does not start, and the candidate answers nothing.
TEST_F(VerifyTest, RefusesWhatCannotBeStarted) {
  if (test::isUnderValgrind()) {
    GTEST_SKIP() << test::kNoFailingExec;
  }
  const std::string home = test::makeFakeJVM(m_dir / "jdk", FakeJVM::RightValues);
  TagFile tags;
  test::addTags(tags, kRequirements);
  test::addTags(tags, {{"REQ_JAVA_ARGS", {std::string(std::size_t{8} << 20, 'x')}}});
  EXPECT_EQ(nullptr, JVMFile(tags).verify(sstr(home), {"\"x.jar\"", "\"Verify\""}));
  const std::string log = takeLog();
  EXPECT_EQ(
      "Output from the launch script execution\nStdOut:\n\nErrOut:\n\n"
      "WARNING: Error starting /bin/sh: Argument list too long\n"
      "ERROR: Invalid magic value: \n\n",
      log.substr(std::min(log.size(), log.find("Output from"))));
  EXPECT_EQ(0u, test::callsOfFakeJVM(home).size());
}

// What docs/jvm-file.md promises. The tests of trials link shorter limits.
TEST_F(VerifyTest, HasTheseLimits) {
  EXPECT_EQ(milliseconds(60'000), kTrialLimits.duration);
  EXPECT_EQ(milliseconds(2'000), kTrialLimits.untilKilled);
  EXPECT_EQ(milliseconds(1'000), kTrialLimits.forStragglers);
  EXPECT_EQ(std::size_t{1'048'576}, kTrialLimits.outputSize);
}

// --- The home that the jvm file itself names ---

struct OwnHomeRow {
  const char* name;
  test::Tags tags;
  bool wanted;
  std::string wantedLog;  // its beginning
};

const OwnHomeRow kOwnHomes[] = {
    {"its home is right",
     {{"JVM_HOME", {"DIR/jdk"}}, {"JVM_EXE", {"bin/java"}}, {"JVM_PROPERTIES", {"a=17..."}}},
     true,
     "Verifying JVM at DIR/jdk/bin/java\n"},
    {"it names no home", {{"JVM_EXE", {"bin/java"}}, {"JVM_PROPERTIES", {"a=17..."}}}, false, ""},
    {"without requirements it is not tried",
     {{"JVM_HOME", {"DIR/jdk"}}, {"JVM_EXE", {"bin/java"}}},
     false,
     "WARNING: Unable to verify  because the JVM_PROPERTIES tag was not specified.\n"},
    {"first requirement empty",
     {{"JVM_HOME", {"DIR/jdk"}}, {"JVM_EXE", {"bin/java"}}, {"JVM_PROPERTIES", {"", "a=17..."}}},
     false,
     "WARNING: Unable to verify  because the JVM_PROPERTIES tag was not specified.\n"},
};

TEST_F(VerifyTest, VerifiesItsOwnHome) {
  test::makeFakeJVM(m_dir / "jdk", FakeJVM::RightValues);
  for (const OwnHomeRow& row : kOwnHomes) {
    SCOPED_TRACE(row.name);
    TagFile tags;
    for (const auto& [name, values] : row.tags) {
      for (const std::string& value : values) {
        tags.appendTagValue(sstr(name), sstr(test::replaced(value, "DIR", dir())));
      }
    }
    EXPECT_EQ(row.wanted, JVMFile(tags).verify({"", "Verify"}) != nullptr);
    const std::string log = takeLog();
    EXPECT_EQ(row.wantedLog, row.wanted ? log.substr(0, row.wantedLog.size()) : log);
  }
}

TEST_F(VerifyTest, NamesTheFileThatCannotBeVerified) {
  const std::string path = test::writeFile(m_dir / "java17.jvm", "DESC: Java 17\n");
  TagFile tags(sstr(path));
  EXPECT_EQ(nullptr, JVMFile(tags).verify({"", ""}));
  EXPECT_EQ(
      "WARNING: Unable to verify DIR/java17.jvm because the JVM_PROPERTIES tag was not "
      "specified.\n",
      takeLog());
}

// --- Progress: two steps for a missing executable, one for each chunk of output and six at the end

TEST_F(VerifyTest, AdvancesTheProgress) {
  setenv("LANG", "C", 1);
  test::makeFakeJVM(m_dir / "jdk", FakeJVM::RightValues);
  TagFile tags;
  test::addTags(tags, kRequirements);
  JVMFile jvm(tags);
  PlatformImpl::setSilent(false);
  PlatformImpl::setUIProgress(0);
  PlatformImpl::showUI();
  EXPECT_EQ("..", test::captureStdout([&] { (void)jvm.verify("/not/there", {"", "Verify"}); }));
  EXPECT_EQ(".......", test::captureStdout([&] {
              (void)jvm.verify(sstr(m_dir / "jdk"), {"", "Verify"});
            }));
  EXPECT_EQ("", test::captureStdout([&] { (void)jvm.verify("", {"", "Verify"}); }));
}

}  // namespace
