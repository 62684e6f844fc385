// corvane-pack as its users call it: status, standard output, standard error.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/ArchiveFixture.h"

namespace {

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
    test::writeFile(m_dir / "doubtful", test::launcherFileBytes({}));
  }

  // Runs in the scratch folder.
  Result run(const std::string& arguments) {
    const std::string command = "cd '" + m_dir.path() + "' && '" CORVANE_PACK "' >'" +
                                (m_dir / "out.txt") + "' 2>'" + (m_dir / "err.txt") + "' " +
                                arguments;
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

// In this order: later rows use what the earlier ones made.
const ProgramRow kProgramRows[] = {
    {"pack m.json --stub stub --output setup", 0, "setup: 1 file, 56 bytes\n", ""},
    {"list setup", 0,
     "setup: 1 file, 56 bytes, purpose 0\n"
     "pos  type          id  length  offset  name   unpacked\n"
     "  0  instructions   1      17       5  i.tag  -\n",
     ""},
    {"check setup", 0, "", ""},
    {"check m.json", 0, "", ""},
    {"check doubtful", 1,
     "doubtful: no instruction script: the launcher says nothing and ends with status -1\n", ""},
    {"extract setup --output copy", 0, "", ""},
    {"list stub", 0, "stub: no embedded files, 5 bytes\n", ""},
    {"list --json stub", 0,
     "{\n  \"size\": 5,\n  \"purpose\": null,\n  \"stub\": null,\n  \"files\": []\n}\n", ""},
    {"extract setup --output copy", 1, "",
     "corvane-pack: entry 0 (i.tag): a file of that name is there already; nothing was written, "
     "name "
     "an empty folder with --output\n"},
    {"extract setup --output stub", 1, "", "corvane-pack: stub cannot be made: Not a directory\n"},
    {"extract stub --output empty", 0, "", ""},
    {"list none", 1, "", "corvane-pack: none: No such file or directory\n"},
    {"check none", 1, "", "corvane-pack: none: No such file or directory\n"},
    {"pack bad.json --stub stub --output x --base a --base b", 1, "",
     "corvane-pack: bad.json: files[0].path: there is no file \"x\" in ., a, b; make it, or name "
     "its "
     "folder with --base\n"},
    {"pack m.json --stub setup --output x", 1, "",
     "corvane-pack: setup carries files already; a stub is the bare launcher, as it is built\n"},
    {"list stub >/dev/full", 1, "", "corvane-pack: standard output cannot be written\n"},
    {"--version", 0, CORVANE_VERSION "\n", ""},
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

#define OUR_VERSION " " CORVANE_VERSION " (" CORVANE_MACHINE ")\n"

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

TEST_F(ProgramTest, EndsWithStatus2WhenCalledWrongly) {
  for (const char* const arguments :
       {"", "none", "pack", "pack m.json", "pack --output x", "list", "list a b", "check",
        "extract setup", "list --none setup", "pack m.json --output"}) {
    SCOPED_TRACE(arguments);
    const Result result = run(arguments);
    EXPECT_EQ(2, result.status);
    EXPECT_EQ("", result.out);
    EXPECT_NE(std::string::npos, result.err.find(kHelpHint)) << result.err;
  }
}

TEST_F(ProgramTest, ExplainsEachCommand) {
  for (const char* const command : {"", "pack ", "list ", "check ", "extract "}) {
    SCOPED_TRACE(command);
    const Result result = run(std::string(command) + "--help");
    EXPECT_EQ(0, result.status);
    EXPECT_NE(std::string::npos, result.out.find("Usage: corvane-pack")) << result.out;
    EXPECT_EQ("", result.err);
  }
}

// The bare launcher of the build stands beside the program.
TEST_F(ProgramTest, FindsTheStubBesideIt) {
  const Result result = run("pack m.json --output setup && ./setup -cv:version >/dev/null");
  EXPECT_EQ("", result.err);
  EXPECT_EQ(0, result.status);
}

// The input is large enough to be met halfway.
TEST_F(ProgramTest, LeavesNothingBehindWhenInterrupted) {
  test::writeFile(m_dir / "huge", "");
  std::filesystem::resize_file(m_dir / "huge", 1500000000);
  test::writeFile(m_dir / "huge.json", R"({"files": [{"type": "jar", "path": "huge"}]})");
  const auto before = test::listTree(m_dir.path());
  const pid_t child = fork();
  if (child == 0) {
    execl(CORVANE_PACK, CORVANE_PACK, "pack", (m_dir / "huge.json").c_str(), "--stub",
          (m_dir / "stub").c_str(), "--output", (m_dir / "setup").c_str(), nullptr);
    _exit(127);
  }
  for (int i = 0; i < 5000 && test::listTree(m_dir.path()) == before; ++i) {
    usleep(1000);
  }
  kill(child, SIGTERM);
  int status = 0;
  ASSERT_EQ(child, waitpid(child, &status, 0));
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(SIGTERM, WTERMSIG(status));
  EXPECT_EQ(before, test::listTree(m_dir.path()));
}

}  // namespace
