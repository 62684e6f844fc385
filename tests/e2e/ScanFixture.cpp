#include "e2e/ScanFixture.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "support/OwnProcess.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

bool canChroot() {
  const pid_t pid = fork();
  if (pid == 0) {
    _exit(test::changeRoot("/") ? 0 : 1);
  }
  int status = -1;
  waitpid(pid, &status, 0);
  return status == 0;
}

}  // namespace

void Scan::SetUp() {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's runtime needs files that the small disk lacks";
#endif
  if (!canChroot()) {
    GTEST_SKIP() << "chroot is not allowed here";
  }
  const std::string jail = dir("jail");
  fs::create_directories(jail + "/tmp");
  fs::create_directories(jail + "/app");
  // The shell, and the libraries of the shell and of a stub that is not static.
  const std::string copy =
      "mkdir -p \"$1/bin\" && cp /bin/sh /bin/rm \"$1/bin\" && "
      "for f in $(ldd /bin/sh /bin/rm \"$2\" 2>/dev/null | grep -o '/[^ :]*\\.so[^ :]*'); do "
      "mkdir -p \"$1${f%/*}\" && cp -L \"$f\" \"$1$f\"; done";
  ASSERT_EQ(0, std::system(("set -- '" + jail + "' '" CORVANE_STUB "'; " + copy).c_str()));
  setLauncherPath(jail + "/app/setup");
  setStartPath("/app/setup");
  setEnv("PATH", "/bin");
  setPrepareChild([this, jail] {
    if ((m_prepareDisk && !m_prepareDisk()) || !test::changeRoot(jail)) {
      _exit(124);
    }
  });
}

std::string Scan::place(const std::string& home, const std::string& version) {
  makeJVM("../jail" + home, version);
  return home;
}

Result Scan::runInside(const std::vector<std::string>& args) {
  std::vector<std::string> all{"-cv:tempdir", "/tmp", "-cv:log", "/log"};
  all.insert(all.end(), args.begin(), args.end());
  Result result = runBare(all);
  result.log = test::readFile(dir("jail/log"));
  fs::remove(dir("jail/log"));
  return result;
}

}  // namespace e2e
