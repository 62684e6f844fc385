// corvane-pack meets a signal, or another writer, while it is at work.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

constexpr int kMillisecond = 1000;

class InterruptionTest : public testing::Test {
 protected:
  InterruptionTest() {
    test::writeFile(m_dir / "stub", "stub\n");
    test::writeFile(m_dir / "huge", "");
    fs::resize_file(m_dir / "huge", 1500000000);  // a hole: read for a while, but no room is needed
    test::writeFile(m_dir / "huge.json", R"({"files": [{"type": "jar", "path": "huge"}]})");
  }

  // Starts the program in the scratch folder; its errors go to err.txt.
  pid_t start(const Words& arguments) {
    const pid_t child = fork();
    if (child == 0) {
      const int errors = open((m_dir / "err.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      std::vector<char*> argv = {const_cast<char*>(CORVANE_PACK)};
      for (const std::string& word : arguments) {
        argv.push_back(const_cast<char*>(word.c_str()));
      }
      argv.push_back(nullptr);
      if (dup2(errors, 2) == 2 && chdir(m_dir.path().c_str()) == 0) {
        execv(CORVANE_PACK, argv.data());
      }
      _exit(127);
    }
    return child;
  }

  // Until `child` has the file open, ten seconds at most.
  static bool waitUntilItReads(pid_t child, const std::string& path) {
    const std::string folder = "/proc/" + std::to_string(child) + "/fd";
    for (int i = 0; i < 10000; ++i) {
      std::error_code error;
      for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (fs::read_symlink(entry.path(), error) == path && i > 0) return true;
      }
      usleep(kMillisecond);
    }
    return false;
  }

  static int statusOf(pid_t child) {
    int status = 0;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    return status;
  }

  Words packHuge() {
    return {"pack", "huge.json", "--stub", "stub", "--any-stub", "--output", "setup"};
  }

  test::TempDir m_dir;
};

#ifdef __linux__

// Not every disk can: then KILL leaves a hidden file.
bool holdsFilesWithoutName(const std::string& folder) {
  const int descriptor = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
  if (descriptor >= 0) close(descriptor);
  return descriptor >= 0;
}

TEST_F(InterruptionTest, LeavesNothingBehind) {
  test::writeFile(m_dir / "err.txt", "");
  const auto before = test::listTree(m_dir.path());
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGUSR1, SIGXCPU, SIGKILL}) {
    SCOPED_TRACE(strsignal(signal));
    if (signal == SIGKILL && !holdsFilesWithoutName(m_dir.path())) continue;
    const pid_t child = start(packHuge());
    EXPECT_TRUE(waitUntilItReads(child, m_dir / "huge"));
    kill(child, signal);
    const int status = statusOf(child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
    EXPECT_EQ("", test::readFile(m_dir / "err.txt"));
    EXPECT_EQ(before, test::listTree(m_dir.path()));
  }
}

TEST_F(InterruptionTest, RefusesAnInputThatGrowsMeanwhile) {
  test::writeFile(m_dir / "setup", "old");
  fs::resize_file(m_dir / "huge", 200000000);  // all of it is written
  const pid_t child = start(packHuge());
  EXPECT_TRUE(waitUntilItReads(child, m_dir / "huge"));
  fs::resize_file(m_dir / "huge", 200000001);
  const int status = statusOf(child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
  EXPECT_EQ(
      "corvane-pack: huge changed while it was read: it had 200000000 bytes and has 200000001 "
      "now; nothing was written, try again when it is complete\n",
      test::readFile(m_dir / "err.txt"));
  EXPECT_EQ("old", test::readFile(m_dir / "setup"));
  EXPECT_EQ((Words{"err.txt", "huge", "huge.json", "setup", "stub"}), test::listTree(m_dir.path()));
}

#endif

}  // namespace
