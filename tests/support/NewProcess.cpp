#include "support/NewProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "launcher/LauncherState.h"
#include "platform/CleanupState.h"
#include "platform/Console.h"
#include "platform/SignalState.h"

extern char** environ;

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXFSZ, SIGCHLD, SIGALRM};

// What a test may change in the process besides our own state, as it was when the program started.
class NewProcess : public testing::EmptyTestEventListener {
 public:
  NewProcess();
  void OnTestStart(const testing::TestInfo&) override;

 private:
  void putBackEnvironment() const;

  std::vector<std::string> m_environment;
  int m_directory;
  mode_t m_umask;
  sigset_t m_mask;
  struct sigaction m_actions[std::size(kSignals)];
};

NewProcess::NewProcess() : m_directory(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  for (char** variable = environ; *variable != nullptr; ++variable) {
    m_environment.emplace_back(*variable);
  }
  m_umask = umask(0);
  umask(m_umask);
  sigprocmask(SIG_SETMASK, nullptr, &m_mask);
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], nullptr, &m_actions[i]);
  }
}

void NewProcess::putBackEnvironment() const {
  clearenv();
  for (const std::string& variable : m_environment) {
    const std::size_t equals = variable.find('=');
    setenv(variable.substr(0, equals).c_str(), variable.c_str() + equals + 1, 1);
  }
}

void NewProcess::OnTestStart(const testing::TestInfo&) {
  g_launcher = {};
  g_console = {};
  g_cleanup = {};
  g_signals = {};
  putBackEnvironment();
  EXPECT_NE(nullptr, std::freopen("/dev/null", "r", stdin));  // drops unread input
  EXPECT_EQ(0, fchdir(m_directory));
  umask(m_umask);
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], &m_actions[i], nullptr);
  }
  sigprocmask(SIG_SETMASK, &m_mask, nullptr);
}

}  // namespace

namespace test {

void beginEachTestAsNewProcess() {
  testing::UnitTest::GetInstance()->listeners().Append(new NewProcess);  // gtest deletes it
}

}  // namespace test
