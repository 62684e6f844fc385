#include "archive/LauncherInputFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "launcher/LauncherFacts.h"
#include "platform/PlatformImpl.h"
#include "support/ArchiveFixture.h"

namespace {

using test::launcherFileBytes;
using test::StoredFile;

using LauncherInputFilesTest = ArchiveTest;

std::string script(const std::string& name) {
  return "INSTRUCTIONS:\nSET S1 = " + name + "\nSET N1 = 1\n/:\n";
}

// The name that the script in use was made with; "none" without a script.
std::string scriptOf(const LauncherInputFiles& inputs) {
  if (inputs.getInstructions() == nullptr) return "none";
  (void)inputs.getInstructions()->execute();
  return LauncherFacts::getStringVariable(1).c_str();
}

std::string titleShown() {
  PlatformImpl::showUI();
  const std::string shown =
      test::captureStdout([] { PlatformImpl::setUIStatus(UI_STATUS_INITIALIZING); });
  const std::size_t begin = shown.find("Initializing ") + 13;
  return shown.substr(begin, shown.find("...") - begin);
}

std::string jvmNames(LauncherInputFiles& inputs) {
  std::string names;
  for (std::int32_t i = 0; i < inputs.getJVMFiles().getJVMFileCount(); ++i) {
    names += inputs.getJVMFiles().getJVMFile(i)->getTagFile().getTagValue("DESC", 0).c_str();
    names += ' ';
  }
  return names;
}

std::string messageOf(const LauncherInputFiles& inputs) {
  const JVMMessage* const message = inputs.getJVMMessage();
  return message == nullptr ? "none" : message->getMessage().c_str();
}

struct Outcome {
  std::string error = "";
  std::string script = "none";
  std::string launchScript = "none";  // its description
  std::string title = "Title";
  std::string jvms = "";
  std::string message = "none";
};

struct TagFilesRow {
  const char* name;
  // The input file; "DIR/" stands for the folder of i1, i2 (scripts), l1 (launch script), j1, j2
  // (jvm files) and bad (a file with a syntax error). Null: none is loaded.
  const char* inputFile;
  std::vector<StoredFile> embedded;
  Outcome outcome;
};

const StoredFile kScript = {0, 1, "e.tag", script("embedded")};
const StoredFile kSecondScript = {0, 2, "e2.tag", script("second")};
const StoredFile kLaunchScript = {2, 3, "el.tag", "COMMAND: x\nDESC: EL\n"};
const StoredFile kSecondLaunchScript = {2, 4, "el2.tag", "COMMAND: x\nDESC: EL2\n"};
const StoredFile kJVM = {1, 5, "ej.tag", "DESC: ej\n"};
const StoredFile kSecondJVM = {1, 6, "ej2.tag", "DESC: ej2\n"};
const StoredFile kMessage = {8, 7, "em.tag", "MESSAGE: No JVM\n"};
const StoredFile kLongMessage = {8, 8, "em2.tag", "MESSAGE:\nOne\nTwo\nThree\n/:\n"};
const StoredFile kBad = {1, 9, "ebad.tag", "DESC: x\nno colon\n"};
const StoredFile kJar = {3, 10, "a.jar", "DESC x"};

const std::vector<TagFilesRow> kTagFilesRows = {
    {"nothing", nullptr, {}, {"", "none", "none", "installer"}},
    {"embedded",
     nullptr,
     {kJar, kScript, kLaunchScript, kJVM, kSecondJVM, kMessage},
     {"", "embedded", "EL", "EL", "ej ej2 ", "No JVM"}},
    {"embedded twice: first script, first launch script, last message",
     nullptr,
     {kScript, kSecondScript, kLaunchScript, kSecondLaunchScript, kMessage, kLongMessage},
     {"", "embedded", "EL", "EL", "", "One"}},
    {"message of several lines",
     nullptr,
     {kLongMessage},
     {"", "none", "none", "installer", "", "One"}},
    {"message file without a message",
     nullptr,
     {{8, 1, "m", "OTHER: x\n"}},
     {"", "none", "none", "installer", "", ""}},

    {"input file alone",
     "INSTRUCTIONS: DIR/i1\nLAUNCHSCRIPT: DIR/l1\nJVM:\nDIR/j1\nDIR/j2\n/:\n",
     {},
     {"", "i1", "L1", "L1", "j1 j2 "}},
    {"input file wins",
     "INSTRUCTIONS: DIR/i1\nLAUNCHSCRIPT: DIR/l1\nJVM: DIR/j1\n",
     {kScript, kLaunchScript, kJVM, kMessage},
     {"", "i1", "L1", "L1", "j1 ", "No JVM"}},
    {"input file without instructions",
     "LAUNCHSCRIPT: DIR/l1\n",
     {kScript, kLaunchScript, kJVM},
     {"", "embedded", "L1", "L1", "ej "}},
    {"input file without a launch script",
     "INSTRUCTIONS: DIR/i1\n",
     {kScript, kLaunchScript, kJVM},
     {"", "i1", "EL", "EL", "ej "}},
    {"input file without jvm files",
     "ACTION: RUN_INSTRUCTIONS\n",
     {kScript, kJVM},
     {"", "embedded", "none", "installer", "ej "}},
    {"empty values are none",
     "INSTRUCTIONS: \"\"\nLAUNCHSCRIPT: \"\"\nUI_TITLE: \"\"\n",
     {kScript, kLaunchScript, kJVM},
     {"", "embedded", "EL", "EL", "ej "}},
    {"empty-jvm-value", "JVM: \"\"\n", {kScript, kJVM}, {"", "embedded", "none", "installer", ""}},
    {"title wins over the launch script's",
     "UI_TITLE: Mine\nLAUNCHSCRIPT: DIR/l1\n",
     {},
     {"", "none", "L1", "Mine"}},
    {"title gives way to the embedded launch script's",
     "UI_TITLE: Mine\n",
     {kLaunchScript},
     {"", "none", "EL", "EL"}},
    {"first value only",
     "INSTRUCTIONS:\nDIR/i1\nDIR/i2\n/:\n",
     {},
     {"", "i1", "none", "installer"}},
    {"JVMMESSAGE is not read",
     "JVMMESSAGE: DIR/none\n",
     {kMessage},
     {"", "none", "none", "installer", "", "No JVM"}},

    {"instructions that do not open",
     "INSTRUCTIONS: DIR/none\nLAUNCHSCRIPT: DIR/l1\n",
     {kScript},
     {"Error loading instructions file.Unable to load input file: DIR/none", "none", "none",
      "installer"}},
    {"instructions that are a directory",
     "INSTRUCTIONS: DIR/\n",
     {},
     {"Error loading instructions file.Unable to load input file: DIR/", "none", "none",
      "installer"}},
    {"bad instructions",
     "INSTRUCTIONS: DIR/bad\n",
     {},
     {"Error loading instructions file.Syntax error in DIR/bad at line 2 ==> Missing colon at the "
      "end of the tag name.",
      "none", "none", "installer"}},
    {"launch script that does not open",
     "INSTRUCTIONS: DIR/i1\nLAUNCHSCRIPT: DIR/none\nUI_TITLE: Mine\n",
     {},
     {"Error loading launch script.Unable to load input file: DIR/none", "i1", "none",
      "installer"}},
    {"bad jvm file behind a good one",
     "JVM:\nDIR/j1\nDIR/bad\nDIR/j2\n/:\nUI_TITLE: Mine\n",
     {},
     {"Error loading JVM file.Syntax error in DIR/bad at line 2 ==> Missing colon at the end of "
      "the tag name.",
      "none", "none", "Mine", "j1 "}},
    {"one-prefix-for-all: a bad embedded jvm file",
     nullptr,
     {kScript, kBad, kLaunchScript},
     {"Error loading instructions file.Syntax error in ebad.tag at line 2 ==> Missing colon at the "
      "end of the tag name.",
      "embedded", "none", "installer"}},
    {"a bad embedded jvm file is parsed though others were given",
     "JVM: DIR/j1\n",
     {kBad},
     {"Error loading instructions file.Syntax error in ebad.tag at line 2 ==> Missing colon at the "
      "end of the tag name.",
      "none", "none", "installer", "j1 "}},
};

std::string replaceDir(std::string text, const std::string& dir) {
  for (std::size_t at; (at = text.find("DIR/")) != std::string::npos;) {
    text.replace(at, 3, dir);
  }
  return text;
}

void loadBoth(LauncherInputFiles& inputs, const char* inputFile, const test::TempDir& dir) {
  if (inputFile != nullptr) {
    const TagFile tagFile(test::writeFile(dir / "in", replaceDir(inputFile, dir.path())).c_str());
    inputs.load(tagFile);
  }
  inputs.load(true);
}

TEST_F(LauncherInputFilesTest, CombinesInputFileAndEmbeddedFiles) {
  write("i1", script("i1"));
  write("i2", script("i2"));
  write("l1", "COMMAND: x\nDESC: L1\n");
  write("j1", "DESC: j1\n");
  write("j2", "DESC: j2\n");
  write("bad", "DESC: x\nno colon\n");
  for (const TagFilesRow& row : kTagFilesRows) {
    SCOPED_TRACE(row.name);
    PlatformImpl::setUITitle("installer");
    useLauncher(launcherFileBytes(row.embedded));
    LauncherInputFiles inputs;
    EXPECT_EQ(replaceDir(row.outcome.error, m_dir.path()),
              errorOf([&] { loadBoth(inputs, row.inputFile, m_dir); }));
    EXPECT_EQ(row.outcome.script, scriptOf(inputs));
    const LaunchScript* const launchScript = inputs.getLaunchScript();
    EXPECT_EQ(row.outcome.launchScript,
              launchScript == nullptr ? "none" : launchScript->getDesc().c_str());
    EXPECT_EQ(row.outcome.title, titleShown());
    EXPECT_EQ(row.outcome.jvms, jvmNames(inputs));
    EXPECT_EQ(row.outcome.message, messageOf(inputs));
  }
}

TEST_F(LauncherInputFilesTest, LoadsTheIndexAloneOnDemand) {
  useLauncher(launcherFileBytes({kScript, kLaunchScript, kJVM, kMessage, kBad}));
  LauncherInputFiles inputs;
  inputs.load(false);
  EXPECT_EQ(5, inputs.getFileIndex().size());
  EXPECT_EQ(nullptr, inputs.getFileIndex().at(0)->getTagFile());
  EXPECT_EQ(nullptr, inputs.getInstructions());
  EXPECT_EQ(nullptr, inputs.getLaunchScript());
  EXPECT_EQ(nullptr, inputs.getJVMMessage());
  EXPECT_EQ(0, inputs.getJVMFiles().getJVMFileCount());
}

// A block whose "/:" ends the stored bytes is not joined with what follows them.
TEST_F(LauncherInputFilesTest, KeepsTagFilesApartThatEndWithoutANewline) {
  useLauncher(launcherFileBytes({{0, 1, "i", "INSTRUCTIONS:\nSET S1 = a\nSET N1 = 1\n/:"},
                                 {2, 2, "l", "COMMAND: x\nDESC: L"},
                                 {1, 3, "j", "DESC: j"}}));
  LauncherInputFiles inputs;
  inputs.load(true);
  EXPECT_EQ("a", scriptOf(inputs));
  EXPECT_STREQ("L", inputs.getLaunchScript()->getDesc().c_str());
  EXPECT_EQ("j ", jvmNames(inputs));
  EXPECT_EQ(10, inputs.getFileIndex().at(0)->getOffsetToBytes());
  EXPECT_EQ(38, inputs.getFileIndex().at(0)->getFileLength());
}

struct VerifyClassRow {
  const char* name;
  const char* inputFile;
  const char* classpath;
  const char* verifyClass;
};

const VerifyClassRow kVerifyClassRows[] = {
    {"both", "VERIFY_CLASSPATH: v.jar\nVERIFY_CLASS_NAME: V\n", "v.jar", "V"},
    {"no class name", "VERIFY_CLASSPATH: v.jar\n", "", ""},
    {"no class path", "VERIFY_CLASS_NAME: V\n", "", ""},
    {"empty class name", "VERIFY_CLASSPATH: v.jar\nVERIFY_CLASS_NAME: \"\"\n", "", ""},
};

TEST_F(LauncherInputFilesTest, TakesTheVerifyClassWhenItIsWhole) {
  useLauncher("bare stub\n");
  for (const VerifyClassRow& row : kVerifyClassRows) {
    SCOPED_TRACE(row.name);
    LauncherInputFiles inputs;
    loadBoth(inputs, row.inputFile, m_dir);
    const VerifyClass& verifyClass = inputs.getJVMFiles().writeVerifyJar();
    EXPECT_STREQ(row.classpath, verifyClass.classpath.bytes().c_str());
    EXPECT_STREQ(row.verifyClass, verifyClass.name.bytes().c_str());
  }
}

}  // namespace
