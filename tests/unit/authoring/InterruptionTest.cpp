// corvane-pack meets a signal, or another writer, while it is at work.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "authoring/Sha256.h"
#include "authoring/SumFile.h"
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

  // Starts the program in the scratch folder; its errors go to err.txt, its output nowhere.
  pid_t start(const Words& arguments) {
    const pid_t child = fork();
    if (child == 0) {
      const int errors = open((m_dir / "err.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      std::vector<char*> argv = {const_cast<char*>(CORVANE_PACK)};
      for (const std::string& word : arguments) {
        argv.push_back(const_cast<char*>(word.c_str()));
      }
      argv.push_back(nullptr);
      const int nowhere = open("/dev/null", O_WRONLY);
      if (dup2(errors, 2) == 2 && dup2(nowhere, 1) == 1 && chdir(m_dir.path().c_str()) == 0) {
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
    return {"pack", "huge.json", "--stub", "stub", "--any-stub", "--no-check", "--output", "setup"};
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
    int status = 0;
    // A busy machine may come too late with the signal; then once more.
    for (int i = 0; i < 5 && status == 0; ++i) {
      fs::remove(m_dir / "setup");
      const pid_t child = start(packHuge());
      EXPECT_TRUE(waitUntilItReads(child, m_dir / "huge"));
      kill(child, signal);
      status = statusOf(child);
    }
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
    EXPECT_EQ("", test::readFile(m_dir / "err.txt"));
    EXPECT_EQ(before, test::listTree(m_dir.path()));
  }
}

TEST_F(InterruptionTest, RefusesAnInputThatGrowsMeanwhile) {
  constexpr int kAttempts = 5;  // a busy machine may let it grow too late
  int status = 0;
  for (int i = 0; i < kAttempts && status == 0; ++i) {
    test::writeFile(m_dir / "setup", "old");
    fs::resize_file(m_dir / "huge", 200000000);  // all of it is written
    const pid_t child = start(packHuge());
    waitUntilItReads(child, m_dir / "huge");
    fs::resize_file(m_dir / "huge", 200000001);
    status = statusOf(child);
  }
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
  EXPECT_EQ(
      "corvane-pack: huge changed while it was read: it had 200000000 bytes and has 200000001 "
      "now; nothing was written, try again when it is complete\n",
      test::readFile(m_dir / "err.txt"));
  EXPECT_EQ("old", test::readFile(m_dir / "setup"));
  EXPECT_EQ((Words{"err.txt", "huge", "huge.json", "setup", "stub"}), test::listTree(m_dir.path()));
}

// --- At any moment ---

struct MomentRow {
  const char* name;
  Words arguments;
  Words made;  // what there is more when it went well
};

// Without a check: the file is no jar.
Words packBig(const char* output) {
  return {"pack", "big.json", "--stub", "stub", "--any-stub", "--no-check", "--output", output};
}

const MomentRow kMomentRows[] = {
    {"pack", packBig("new"), {"new", "new.sha256"}},
    {"pack over a file", packBig("old"), {}},
    {"extract",
     {"extract", "setup", "--output", "folder"},
     {"folder/", "folder/big", "folder/manifest.json", "folder/stub"}},
    {"extract a part",
     {"extract", "setup", "--file", "big", "--output", "part"},
     {"part/", "part/big"}},
    {"list", {"list", "setup"}, {}},
    {"check", {"check", "big.json"}, {}},
    {"verify", {"verify", "setup"}, {}},
};

class MomentTest : public InterruptionTest {
 protected:
  MomentTest() {
    fs::remove(m_dir / "huge");
    test::writeFile(m_dir / "big", std::string(kBig, 'x') + "\n");
    test::writeFile(m_dir / "big.json", R"({"files": [{"type": "jar", "path": "big"}]})");
    EXPECT_EQ(0, statusOf(start(packBig("setup"))));
    restoreOld();
  }

  // The moments of each command; CORVANE_MOMENTS asks for another number.
  static int moments() {
    const char* const wanted = std::getenv("CORVANE_MOMENTS");
    return wanted == nullptr ? 6 : std::atoi(wanted);
  }

  // How long the command takes when nobody disturbs it. Removes what it made.
  int durationOf(const MomentRow& row) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(WIFEXITED(statusOf(start(row.arguments))));
    const auto duration = std::chrono::steady_clock::now() - begin;
    removeMade(row);
    return static_cast<int>(
        std::chrono::duration_cast<std::chrono::microseconds>(duration).count());
  }

  void removeMade(const MomentRow& row) {
    for (const std::string& name : row.made) {
      fs::remove_all(m_dir / name);
    }
    restoreOld();
  }

  // A setup of an earlier day, with its sum.
  void restoreOld() {
    test::writeFile(m_dir / "old", "an earlier setup");
    test::writeFile(m_dir / "old.sha256", sumOf("old"));
  }

  std::string sumOf(const std::string& name) {
    return authoring::sumLine(authoring::hexOf(authoring::sha256Of(test::readFile(m_dir / name))),
                              name);
  }

  // The sums in the folder fit. One may be missing after a KILL, and no other time.
  void expectTrueSums(bool wasKilled) {
    for (const std::string name : {"new", "old"}) {
      const bool hasSum = fs::exists(m_dir / (name + ".sha256"));
      if (hasSum) {
        EXPECT_EQ(sumOf(name), test::readFile(m_dir / (name + ".sha256")));
      } else {
        EXPECT_TRUE(wasKilled || !fs::exists(m_dir / name)) << name;
      }
    }
  }

  static Words withoutSums(Words names) {
    std::erase_if(names, [](const std::string& name) { return name.ends_with(".sha256"); });
    return names;
  }

  // Without what no program can remove that is ended by KILL.
  Words tree(bool wasKilled) {
    Words names;
    for (const std::string& name : test::listTree(m_dir.path())) {
      if (!wasKilled || name.find("/.corvane-pack-") == name.npos) {
        if (!wasKilled || !name.starts_with(".corvane-pack-")) names.push_back(name);
      }
    }
    return names;
  }

  static constexpr std::size_t kBig = 30000000;
};

TEST_F(MomentTest, NothingIsHalfMade) {
  for (const MomentRow& row : kMomentRows) {
    const int duration = durationOf(row);
    const Words before = tree(false);
    for (int i = 0; i < moments(); ++i) {
      const int signal = std::vector{SIGTERM, SIGINT, SIGKILL}[static_cast<std::size_t>(i) % 3];
      SCOPED_TRACE(std::string(row.name) + ", moment " + std::to_string(i));
      const pid_t child = start(row.arguments);
      usleep(static_cast<useconds_t>(std::int64_t{duration} * i / moments()));
      kill(child, signal);
      statusOf(child);
      Words whole = before;
      whole.insert(whole.end(), row.made.begin(), row.made.end());
      std::sort(whole.begin(), whole.end());
      const Words after = withoutSums(tree(signal == SIGKILL));
      EXPECT_TRUE(after == withoutSums(before) || after == withoutSums(whole))
          << testing::PrintToString(after);
      expectTrueSums(signal == SIGKILL);
      for (const char* const file : {"new", "old", "folder/big", "part/big"}) {
        std::error_code error;
        const auto size = fs::file_size(m_dir / file, error);
        const bool isEarlier = std::string(file) == "old" && size == 16;
        EXPECT_TRUE(error || isEarlier ||
                    size == fs::file_size(m_dir / (file[3] == '\0' ? "setup" : "big")))
            << file;
      }
      removeMade(row);
      for (const std::string& name : test::listTree(m_dir.path())) {
        if (name.starts_with(".corvane-pack-")) fs::remove_all(m_dir / name);
      }
    }
  }
}

#endif

}  // namespace
