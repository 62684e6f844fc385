// corvane-pack as its users call it: status, standard output, standard error.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "archive/StubMark.h"
#include "support/ArchiveFixture.h"
#include "support/Texts.h"
#include "unit/authoring/SetupBytes.h"

namespace {

namespace fs = std::filesystem;

struct Result {
  int status;
  std::string out;
  std::string err;
};

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() {
    test::writeFile(m_dir / "i.tag", "INSTRUCTIONS: //\n");
    test::writeFile(m_dir / "stub", "stub\n");
    test::writeFile(m_dir / "m.json", R"({"files": [{"type": "instructions", "path": "i.tag"}]})");
    test::writeFile(m_dir / "bad.json", R"({"files": [{"type": "jar", "path": "x"}]})");
    test::writeFile(m_dir / "m.tag", "MESSAGE: x\n");
    test::writeFile(m_dir / "n.tag", "MESSAGE: x\n");
    test::writeFile(m_dir / "warned.json", R"({"files": [
      {"type": "instructions", "path": "i.tag"}, {"type": "jvm-message", "path": "m.tag"},
      {"type": "jvm-message", "path": "n.tag"}]})");
    test::writeFile(m_dir / "doubtful", test::launcherFileBytes({}));
    const std::string sound =
        test::setupBytes({{0, 1, "i.tag", "INSTRUCTIONS: //\n"}}, 0, "stub\n");
    test::writeFile(m_dir / "damaged", test::replaced(sound, ": //", ":\t//"));
  }

  // Runs in the scratch folder.
  Result run(const std::string& arguments) { return runShell("'" CORVANE_PACK "' " + arguments); }
  // The program stands behind the shell's words.
  Result runShell(const std::string& words) {
    const std::string command = "cd '" + m_dir.path() + "' && exec >'" + (m_dir / "out.txt") +
                                "' 2>'" + (m_dir / "err.txt") + "'; " + words;
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), test::readFile(m_dir / "out.txt"),
            test::readFile(m_dir / "err.txt")};
  }

  test::TempDir m_dir;
};

struct ProgramRow {
  const char* arguments;
  int status;
  const char* out;
  const char* err;
};

constexpr const char* kHelpHint = "Run with --help for more information.\n";

#define NO_DIGESTS                                                                             \
  "has no digests: an older corvane-pack or another program packed it, and whether its bytes " \
  "were changed cannot be told"

// In this order: later rows use what the earlier ones made.
const ProgramRow kProgramRows[] = {
    {"pack m.json --any-stub --stub stub --output setup", 0,
     "setup: 1 file, 220 bytes, checksum in setup.sha256\n", ""},
    {"list setup", 0,
     "setup: 1 file, 220 bytes, purpose 0, digests\n"
     "pos  type          id  length  offset  name   unpacked\n"
     "  0  instructions   1      17       5  i.tag  -\n",
     ""},
    {"check setup", 0, "", ""},
    {"check m.json", 0, "", ""},
    {"check - <setup", 0, "", ""},
    {"check - <m.json", 0, "", ""},
    {"check /dev/stdin <m.json", 0, "", ""},
    {"check stub", 1, "",
     "corvane-pack: stub is no launcher file and no manifest; it looks like a text\n"},
    {"check - <stub", 1, "",
     "corvane-pack: standard input is no launcher file and no manifest; it looks like a text\n"},
    {"check doubtful", 1,
     "doubtful: error: no instruction script; the launcher says nothing and ends with status -1; "
     "add a file of the type instructions\ndoubtful: 1 error, 0 warnings\n",
     ""},
    {"extract setup --output copy", 0, "copy: 1 file, stub, manifest.json\n",
     "corvane-pack: warning: the stub is none of ours; pack it again with --any-stub\n"},
    {"extract setup --file i.tag --output part", 0, "part: 1 file\n", ""},
    {"extract setup --file i.tag --output -", 0, "INSTRUCTIONS: //\n", ""},
    {"extract - --id 1 --output - <setup", 0, "INSTRUCTIONS: //\n", ""},
    {"extract setup --file x --output -", 1, "",
     "corvane-pack: no file is stored as \"x\"; `corvane-pack list` shows what there is\n"},
    {"list --json - <setup", 0,
     "{\n  \"size\": 220,\n  \"purpose\": 0,\n  \"stub\": null,\n  \"digests\": \"stored\",\n  "
     "\"files\": [\n    {\n"
     "      \"position\": 0,\n      \"type\": \"instructions\",\n      \"id\": 1,\n"
     "      \"length\": 17,\n      \"offset\": 5,\n      \"name\": \"i.tag\",\n      \"sha256\": \""
     "88f1ea7113413500a572b748db2c60ad407d19873a9c6b3fd81538b225fa8242\"\n    }\n  ]\n}\n",
     ""},
    {"list stub", 1, "", "corvane-pack: stub is no launcher file; it looks like a text\n"},
    {"list --json stub", 1, "", "corvane-pack: stub is no launcher file; it looks like a text\n"},
    {"list - <stub", 1, "",
     "corvane-pack: standard input is no launcher file; it looks like a text\n"},
    {"list m.json", 1, "", "corvane-pack: m.json is no launcher file; it looks like a manifest\n"},
    {"list .", 1, "", "corvane-pack: . is a folder; name a file\n"},
    {"list - <.", 1, "", "corvane-pack: standard input is a folder; name a file\n"},
    {"check copy", 1, "",
     "corvane-pack: copy is a folder; name the file in it: copy/manifest.json\n"},
    {"list - <&-", 1, "", "corvane-pack: standard input: Bad file descriptor\n"},
    {"pack - --any-stub --stub stub --output again <m.json", 0,
     "again: 1 file, 220 bytes, checksum in again.sha256\n", ""},
    {"pack m.json --any-stub --stub stub --output - | cmp - setup", 0, "",
     "standard output: 1 file, 220 bytes\n"},
    {"pack m.json --any-stub --stub stub --output - >/dev/full", 1, "",
     "corvane-pack: standard output cannot be written: No space left on device\n"},
    {"extract setup --output copy", 1, "",
     "corvane-pack: copy is not empty; name a new or an empty folder\n"},
    {"extract setup --output stub", 1, "",
     "corvane-pack: stub is a file; name a new or an empty folder\n"},
    {"extract stub --output empty", 1, "",
     "corvane-pack: stub is no launcher file; it looks like a text\n"},
    {"extract '" CORVANE_STUB "' --output empty", 1, "",
     "corvane-pack: " CORVANE_STUB " carries no files; there is nothing to copy out\n"},
    {"list none", 1, "", "corvane-pack: none: No such file or directory\n"},
    {"check none", 1, "", "corvane-pack: none: No such file or directory\n"},
    {"pack bad.json --any-stub --stub stub --output x --base a --base b", 1, "",
     "bad.json: error: no instruction script; the launcher says nothing and ends with status -1; "
     "add a file of the type instructions\n"
     "bad.json:1: error: files[0].path: there is no file \"x\" in ., a, b; make it, or name its "
     "folder with --base\n"
     "bad.json: 2 errors, 0 warnings\n"
     "corvane-pack: nothing was packed; correct the errors, or go on with --no-check\n"},
    {"pack bad.json --no-check --any-stub --stub stub --output x --base a --base b", 1, "",
     "corvane-pack: bad.json: files[0].path: there is no file \"x\" in ., a, b; make it, or name "
     "its folder with --base\n"},
    {"pack warned.json --any-stub --stub stub --output x", 0,
     "x: 3 files, 348 bytes, checksum in x.sha256\n",
     "warned.json:2: warning: m.tag is never used; of the files of the type jvm-message the "
     "launcher "
     "takes the last, n.tag; leave it out\n"
     "warned.json: 0 errors, 1 warning\n"},
    {"pack warned.json --strict --any-stub --stub stub --output y", 1, "",
     "warned.json:2: error: m.tag is never used; of the files of the type jvm-message the launcher "
     "takes the last, n.tag; leave it out\n"
     "warned.json: 1 error, 0 warnings\n"
     "corvane-pack: nothing was packed; correct the errors, or go on with --no-check\n"},
    {"pack warned.json --no-check --any-stub --stub stub --output y", 0,
     "y: 3 files, 348 bytes, checksum in y.sha256\n", ""},
    {"check warned.json --strict", 1,
     "warned.json:2: error: m.tag is never used; of the files of the type jvm-message the launcher "
     "takes the last, n.tag; leave it out\n"
     "warned.json: 1 error, 0 warnings\n",
     ""},
    {"check - <m.json", 0, "", ""},
    {"check --json - <setup", 0,
     "{\n  \"file\": \"standard input\",\n  \"errors\": 0,\n  \"warnings\": 0,\n"
     "  \"findings\": []\n}\n",
     ""},
    {"pack m.json --any-stub --stub stub --no-sha256 --output setup", 0,
     "setup: 1 file, 220 bytes\n", ""},
    {"pack m.json --any-stub --stub stub --output setup", 0,
     "setup: 1 file, 220 bytes, checksum in setup.sha256\n", ""},
    {"verify setup", 0, "setup: sound: 1 file, 220 bytes\n", ""},
    {"verify - <setup", 0, "standard input: sound: 1 file, 220 bytes\n", ""},
    {"verify doubtful setup", 3,
     "doubtful: unknown: " NO_DIGESTS "\n"
     "setup: sound: 1 file, 220 bytes\n",
     ""},
    {"verify --json setup doubtful none", 1,
     "{\n  \"setups\": [\n    {\n      \"file\": \"setup\",\n      \"state\": \"sound\",\n"
     "      \"faults\": []\n    },\n    {\n      \"file\": \"doubtful\",\n"
     "      \"state\": \"unknown\",\n      \"faults\": [\n        \"" NO_DIGESTS "\"\n      ]\n"
     "    },\n    {\n      \"file\": \"none\",\n      \"state\": \"unreadable\",\n"
     "      \"faults\": [\n        \"none: No such file or directory\"\n      ]\n    }\n  ]\n}\n",
     ""},
    {"verify none doubtful", 1, "doubtful: unknown: " NO_DIGESTS "\n",
     "corvane-pack: none: No such file or directory\n"},
    {"verify stub", 1, "", "corvane-pack: stub is no launcher file; it looks like a text\n"},
    {"check damaged", 1,
     "damaged: error: i.tag is damaged (bytes 5 to 21); it is not as it was packed; copy the setup "
     "again, or pack it again\ndamaged: 1 error, 0 warnings\n",
     ""},
    {"verify damaged doubtful", 1,
     "damaged: damaged: i.tag is damaged (bytes 5 to 21)\ndoubtful: unknown: " NO_DIGESTS "\n", ""},
    {"pack m.json --stub setup --output x", 1, "",
     "corvane-pack: setup carries files already; a stub is the bare launcher, as it is built\n"},
    {"list setup >/dev/full", 1, "", "corvane-pack: standard output cannot be written\n"},
};

TEST_F(ProgramTest, DoesOrRefuses) {
  for (const ProgramRow& row : kProgramRows) {
    SCOPED_TRACE(row.arguments);
    const Result result = run(row.arguments);
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ(row.err, result.err);
  }
}

struct StubRow {
  const char* arguments;
  const char* wanted;  // in the output
};

#define OUR_VERSION " " CORVANE_VERSION " (" CORVANE_MACHINE ")"

// The stub that is taken when none is named, and the one that is.
const StubRow kStubRows[] = {
    {"list any", ", purpose 0, stub corvane-launcher-any" OUR_VERSION},
    {"list traditional", ", purpose 0, stub corvane-launcher" OUR_VERSION},
    {"list '" CORVANE_STUB "'", " bytes, stub corvane-launcher" OUR_VERSION},
    {"list --json any",
     "  \"stub\": {\n    \"kind\": \"corvane-launcher-any\",\n    \"version\": \"" CORVANE_VERSION
     "\",\n    \"encoding\": \"user\",\n    \"machine\": \"" CORVANE_MACHINE "\"\n  },\n"},
    {"list --json traditional", "    \"encoding\": \"traditional\",\n"},
    {"check any", "any: stub corvane-launcher-any" OUR_VERSION},
};

TEST_F(ProgramTest, TellsTheStub) {
  run("pack m.json --output any");
  run("pack m.json --stub '" CORVANE_STUB "' --output traditional");
  for (const StubRow& row : kStubRows) {
    const Result result = run(row.arguments);
    EXPECT_EQ(0, result.status) << row.arguments;
    EXPECT_NE(std::string::npos, result.out.find(row.wanted)) << row.arguments << result.out;
  }
}

// Each is read once, whatever it holds.
TEST_F(ProgramTest, ReadsPipes) {
  run("pack m.json --output any");
  for (const char* const words :
       {"cat any | PACK check -", "cat any | PACK check /dev/stdin",
        "mkfifo p; cat any >p & PACK check p", "cat m.json | PACK check -",
        "cat m.json | PACK check /dev/stdin"}) {
    SCOPED_TRACE(words);
    const Result result = runShell(test::replaced(words, "PACK", "'" CORVANE_PACK "'"));
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_EQ("", result.err);
  }
  const Result listed = runShell("cat any | '" CORVANE_PACK "' list -");
  EXPECT_TRUE(listed.out.starts_with("standard input: 1 file, ")) << listed.out;
}

TEST_F(ProgramTest, TellsItsVersionAndThoseOfTheStubs) {
  const std::string wanted =
      "corvane-pack " CORVANE_VERSION "\ncorvane-launcher-any" OUR_VERSION ": " CORVANE_STUB_ANY
      "\ncorvane-launcher" OUR_VERSION ": " CORVANE_STUB "\n";
  for (const std::string command : {"", "pack ", "list ", "check ", "extract ", "verify "}) {
    const Result result = run(command + "--version");
    EXPECT_EQ(0, result.status) << command;
    EXPECT_EQ(wanted, result.out) << command;
    EXPECT_EQ("", result.err) << command;
  }
}

struct UsageRow {
  const char* arguments;
  const char* error;
};

constexpr const char* kNoCommand = "name a command; the commands are ";

const UsageRow kUsageRows[] = {
    {"", kNoCommand},
    {"none", "\"none\" is no command; the commands are "},
    {"pak", "\"pak\" is no command; did you mean pack?\n"},
    {"lsit x", "\"lsit\" is no command; did you mean list?\n"},
    {"exctract x", "\"exctract\" is no command; did you mean extract?\n"},
    {"\"$(printf 'a\\033b')\"", "\"a\\x1Bb\" is no command; the commands are "},
    {"--json", "\"--json\" is no option\n"},
    {"--vresion", "\"--vresion\" is no option; did you mean --version?\n"},
    {"--verson", "\"--verson\" is no option; did you mean --version?\n"},
    {"pack", "MANIFEST is required\n"},
    {"pack m.json", "--output is required\n"},
    {"pack m.json --outptu x", "\"--outptu\" is no option of pack; did you mean --output?\n"},
    {"pack m.json --ouput x", "\"--ouput\" is no option of pack; did you mean --output?\n"},
    {"pack m.json --ouput=x", "\"--ouput\" is no option of pack; did you mean --output?\n"},
    {"pack --output x", "MANIFEST is required\n"},
    {"pack m.json --output x --stub stub --machine x86_64", "--stub excludes --machine\n"},
    {"pack m.json --output", "--output lacks its FILE\n"},
    {"pack m.json --output x --output y", "--output is given more than once\n"},
    {"extract setup --output x --id y", "--id takes a whole number of 32 bits\n"},
    {"extract setup --output x --id 2147483648", "--id takes a whole number of 32 bits\n"},
    {"list", "FILE is required\n"},
    {"list a b", "\"b\" is one argument too many for list\n"},
    {"list -x setup", "\"-x\" is no option of list\n"},
    {"check", "FILE is required\n"},
    {"verify", "SETUP is required\n"},
    {"verfy x", "\"verfy\" is no command; did you mean verify?\n"},
    {"extract setup", "--output is required\n"},
};

TEST_F(ProgramTest, EndsWithStatus2WhenCalledWrongly) {
  for (const UsageRow& row : kUsageRows) {
    SCOPED_TRACE(row.arguments);
    const Result result = run(row.arguments);
    EXPECT_EQ(2, result.status);
    EXPECT_EQ("", result.out);
    EXPECT_TRUE(result.err.starts_with("corvane-pack: " + std::string(row.error))) << result.err;
    EXPECT_TRUE(result.err.ends_with("\n" + std::string(kHelpHint))) << result.err;
  }
}

TEST_F(ProgramTest, ExplainsEachCommand) {
  for (const char* const command : {"", "pack ", "list ", "check ", "extract ", "verify "}) {
    SCOPED_TRACE(command);
    const Result result = run(std::string(command) + "--help");
    EXPECT_EQ(0, result.status);
    EXPECT_NE(std::string::npos, result.out.find("Usage: corvane-pack")) << result.out;
    EXPECT_EQ("", result.err);
  }
}

// --- Where there is no room ---

struct RoomRow {
  const char* name;
  const char* arguments;
  const char* out;
  const char* err;
};

class NoRoom : public ProgramTest {
 protected:
  void SetUp() override {
    test::writeFile(m_dir / "big", std::string(300000, 'x'));
    test::writeFile(m_dir / "big.json", R"({"files": [{"type": "instructions", "path": "i.tag"},
                                                      {"type": "jar", "path": "big"}]})");
    ASSERT_EQ(0, run("pack big.json --no-check --any-stub --stub stub --output setup").status);
    ASSERT_EQ(0, mkdir((m_dir / "room").c_str(), 0755));
  }

  // Disks of the test's own, which nobody else sees.
  bool hasDisks() { return runShell("unshare -rm " + mountOf(100 << 10)).status == 0; }
  static std::string mountOf(std::uintmax_t size) {
    return "mount -t tmpfs -o size=" + std::to_string(size) + " none room";
  }
  // With `room` on a disk of that size.
  void expectNoRoom(const RoomRow& row, std::uintmax_t size) {
    test::writeScript(m_dir / "inside", "#!/bin/sh\n" + mountOf(size) + "\n'" CORVANE_PACK "' " +
                                            row.arguments + "\nstatus=$?\nls room\nexit $status\n");
    const Result result = runShell("unshare -rm ./inside");
    EXPECT_EQ(1, result.status);
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ(row.err, result.err);
  }

  static constexpr const char* kNoDisks = "no mount namespace of one's own here";
};

// As set by ulimit(1).
TEST_F(NoRoom, FilesMayNotGrow) {
  const RoomRow rows[] = {
      {"pack", "pack big.json --no-check --any-stub --stub stub --output room/new", "",
       "corvane-pack: the launcher file cannot be written: File too large\n"},
      {"pack over a file", "pack big.json --no-check --any-stub --stub stub --output setup", "",
       "corvane-pack: the launcher file cannot be written: File too large\n"},
      {"extract", "extract setup --output room", "",
       "corvane-pack: room/big cannot be written: File too large\n"},
  };
  const std::string before = test::readFile(m_dir / "setup");
  for (const RoomRow& row : rows) {
    SCOPED_TRACE(row.name);
    const Result result =
        runShell("(ulimit -f 100; '" CORVANE_PACK "' " + std::string(row.arguments) +
                 "); status=$?; ls room; exit $status");
    EXPECT_EQ(1, result.status);
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ(row.err, result.err);
    EXPECT_TRUE(before == test::readFile(m_dir / "setup"));
  }
}

TEST_F(NoRoom, TheDiskIsFull) {
  if (!hasDisks()) {
    GTEST_SKIP() << kNoDisks;
  }
  const RoomRow rows[] = {
      {"pack", "pack big.json --no-check --any-stub --stub stub --output room/new", "",
       "corvane-pack: the launcher file cannot be written: No space left on device\n"},
      {"extract", "extract setup --output room", "",
       "corvane-pack: room/big cannot be written: No space left on device\n"},
      {"extract into a new folder", "extract setup --output room/new", "",
       "corvane-pack: room/new/big cannot be written: No space left on device\n"},
  };
  for (const RoomRow& row : rows) {
    SCOPED_TRACE(row.name);
    expectNoRoom(row, 100 << 10);
  }
}

// The setup fits to the last page, and its checksum has no room.
TEST_F(NoRoom, TheDiskIsFullForTheChecksum) {
  if (!hasDisks()) {
    GTEST_SKIP() << kNoDisks;
  }
  constexpr std::uintmax_t kPage = 4096;
  const std::uintmax_t pages = (fs::file_size(m_dir / "setup") + kPage - 1) / kPage;
  expectNoRoom({"pack", "pack big.json --no-check --any-stub --stub stub --output room/new", "",
                "corvane-pack: room/new.sha256 cannot be written: No space left on device\n"},
               pages * kPage);
}

// --- The same bytes, whoever packs them and where ---

struct SurroundingsRow {
  const char* name;
  const char* words;  // of the shell; PACK, and DIR for the scratch folder
};

const SurroundingsRow kSurroundings[] = {
    {"another time zone", "TZ=Pacific/Kiritimati PACK pack m.json"},
    {"another language", "LANG=tr_TR.UTF-8 LC_ALL=tr_TR.UTF-8 PACK pack m.json"},
    {"nothing in the environment", "env -i PACK pack m.json"},
    {"closed to others", "umask 077; PACK pack m.json"},
    {"open to everybody", "umask 0; PACK pack m.json"},
    {"another folder", "cd /; PACK pack DIR/m.json"},
    {"a copy of the folder",
     "mkdir -p copy/deep && cp i.tag m.json stub copy/deep; cd copy/deep; PACK pack m.json"},
    {"files of another time and mode",
     "touch -d 2001-01-01 i.tag; chmod 600 i.tag; PACK pack m.json"},
    {"a manifest from a pipe", "cat m.json | PACK pack -"},
};

TEST_F(ProgramTest, PacksTheSameBytesAnywhere) {
  ASSERT_EQ(0, run("pack m.json --any-stub --stub stub --output first").status);
  for (const SurroundingsRow& row : kSurroundings) {
    SCOPED_TRACE(row.name);
    std::string words = test::replaced(row.words, "PACK", "'" CORVANE_PACK "'");
    words = "(" + test::replaced(words, "DIR", m_dir.path()) + " --any-stub --stub " +
            (m_dir / "stub") + " --output " + (m_dir / "second") +
            ") && cmp first second && sed s/first/second/ first.sha256 | cmp - second.sha256";
    const Result result = runShell(words);
    EXPECT_EQ(0, result.status) << result.out << result.err;
    EXPECT_EQ("", result.err);
  }
}

// --- Taken apart and packed again ---

TEST_F(ProgramTest, MakesTheSampleAgain) {
  if (access(CORVANE_SAMPLE, R_OK) != 0) {
    GTEST_SKIP() << "the sample is built with a JDK";
  }
  const Result apart = run("extract '" CORVANE_SAMPLE "' --output apart");
  EXPECT_EQ(0, apart.status);
  EXPECT_EQ("", apart.err);
  EXPECT_EQ("apart: 7 files, corvane-launcher-any, manifest.json\n", apart.out);
  EXPECT_EQ(0, run("pack apart/manifest.json --output again").status);
  EXPECT_EQ(0, runShell("cmp again '" CORVANE_SAMPLE "'").status);
}

// --- The stub that is taken when none is named ---

// What is installed needs nothing of the build's folder.
TEST_F(ProgramTest, FindsTheInstalledStub) {
  if (access(CORVANE_BUILD_DIR, W_OK) != 0) {
    GTEST_SKIP() << "cmake lists what it installs in the build's folder, which is not ours";
  }
  ASSERT_EQ(
      0, runShell("'" CORVANE_CMAKE "' --install '" CORVANE_BUILD_DIR "' --prefix prefix").status);
  const Result packed =
      runShell("prefix/bin/corvane-pack pack m.json --output setup && ./setup -cv:version");
  EXPECT_EQ("", packed.err);
  EXPECT_EQ(0, packed.status);
  EXPECT_TRUE(packed.out.ends_with("\n" CORVANE_VERSION "\n")) << packed.out;
  EXPECT_EQ(0, runShell("./setup && test \"$(stat -c %a setup)\" = 755").status);
  EXPECT_EQ("\n", test::readFile(m_dir / "out.txt"));
  for (const char* const file :
       {"man/man1/corvane-pack.1", "man/man1/corvane-pack-pack.1", "man/man1/corvane-pack-list.1",
        "man/man1/corvane-pack-check.1", "man/man1/corvane-pack-extract.1",
        "bash-completion/completions/corvane-pack.bash", "zsh/vendor-completions/_corvane-pack",
        "fish/vendor_completions.d/corvane-pack.fish"}) {
    EXPECT_NE("", test::readFile(m_dir / ("prefix/share/" + std::string(file)))) << file;
  }
  const std::string listed = run("list setup").out;
  EXPECT_NE(std::string::npos, listed.find(", stub corvane-launcher-any ")) << listed;
  for (const char* page : {"corvane-launcher", "corvane-pack"}) {
    const std::string installed = "prefix/share/man/man1/" + std::string(page) + ".1";
    EXPECT_EQ(0, runShell("grep '\"Corvane " CORVANE_VERSION "\"' " + installed).status);
  }
}

// Without --base; a file of another type would not be found there.
TEST_F(ProgramTest, FindsTheInstalledVerifyArchive) {
  for (const char* const place : {"share/corvane", "lib/corvane", "java"}) {
    ASSERT_EQ(0, runShell("rm -rf p && mkdir -p p/bin p/" + std::string(place) +
                          " && cp '" CORVANE_PACK "' p/bin && echo PK >p/" + place + "/verify.jar")
                     .status);
    for (const char* const type : {"verify", "jar"}) {
      SCOPED_TRACE(std::string(place) + " " + type);
      test::writeFile(m_dir / "v.json", R"({"files": [{"type": ")" + std::string(type) +
                                            R"(", "path": "verify.jar"}]})");
      const Result result =
          runShell("p/bin/corvane-pack pack v.json --any-stub --no-check --stub stub --output v");
      EXPECT_EQ(type[0] == 'v' ? "v: 1 file, 211 bytes, checksum in v.sha256\n" : "", result.out)
          << result.err;
    }
  }
}

// --- Stubs for other machines ---

struct MachineRow {
  const char* arguments;
  int status;
  const char* out;
  const char* err;
};

const MachineRow kMachineRows[] = {
    {"pack m.json --machine aarch64 --output a", 0, "a: 1 file, 294 bytes, checksum in a.sha256\n",
     ""},
    {"pack m.json --machine arm64 --output a", 0, "a: 1 file, 294 bytes, checksum in a.sha256\n",
     ""},
    {"check a", 0, "a: stub corvane-launcher-any 1 (aarch64)\n", ""},
    {"pack m.json --machine amd64 --output a", 0, "a: 1 file, 293 bytes, checksum in a.sha256\n",
     ""},
    {"pack m.json --machine vax --output b", 1, "",
     "corvane-pack: there is no stub for the machine \"vax\", only for x86_64, aarch64; install "
     "the "
     "package corvane-stubs-vax, or name a stub with --stub\n"},
    {"--version", 0,
     "corvane-pack " CORVANE_VERSION
     "\ncorvane-launcher-any 1 (x86_64): DIR/p/libexec/corvane/corvane-launcher-any\n"
     "corvane-launcher-any 1 (aarch64): DIR/p/libexec/corvane/aarch64/corvane-launcher-any\n"
     "corvane-launcher 1 (aarch64): DIR/p/libexec/corvane/aarch64/corvane-launcher\n",
     ""},
};

TEST_F(ProgramTest, TakesTheStubOfAMachine) {
  const std::string folder = m_dir / "p/libexec/corvane/";
  const std::string any = "corvane-launcher-any";
  test::writeFile(folder + any, CORVANE_STUB_MARK("corvane-launcher-any", "1", "user", "x86_64"));
  test::writeFile(folder + "aarch64/" + any,
                  CORVANE_STUB_MARK("corvane-launcher-any", "1", "user", "aarch64"));
  test::writeFile(folder + "aarch64/corvane-launcher",
                  CORVANE_STUB_MARK("corvane-launcher", "1", "traditional", "aarch64"));
  ASSERT_EQ(0, runShell("mkdir p/bin && cp '" CORVANE_PACK "' p/bin").status);
  for (const MachineRow& row : kMachineRows) {
    SCOPED_TRACE(row.arguments);
    const Result result = runShell("p/bin/corvane-pack " + std::string(row.arguments));
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ(row.out, test::replaced(result.out, fs::canonical(m_dir.path()).string(), "DIR"));
    EXPECT_EQ(row.err, result.err);
  }
}

// The bare launcher of the build stands beside the program.
TEST_F(ProgramTest, FindsTheStubBesideIt) {
  const Result result = run("pack m.json --output setup && ./setup -cv:version >/dev/null");
  EXPECT_EQ("", result.err);
  EXPECT_EQ(0, result.status);
}

}  // namespace
