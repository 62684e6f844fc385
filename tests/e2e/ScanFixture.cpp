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
  for (const char* folder : {"/tmp", "/app", "/bin"}) {
    fs::create_directories(jail + folder);
  }
  fs::copy("/bin/sh", jail + "/bin/sh");
  fs::copy("/bin/rm", jail + "/bin/rm");
  bringLibrariesOf("/bin/sh /bin/rm '" CORVANE_STUB "'");  // the stub need not be static
  setLauncherPath(jail + "/app/setup");
  setStartPath("/app/setup");
  setEnv("PATH", "/bin");
  setPrepareChild([this, jail] {
    if ((m_prepareDisk && !m_prepareDisk()) || !test::changeRoot(jail)) {
      _exit(124);
    }
  });
}

void Scan::bringLibrariesOf(const std::string& programs) {
  const std::string copy = "for f in $(ldd " + programs +
                           " 2>/dev/null | grep -o '/[^ :]*\\.so[^ :]*'); do "
                           "mkdir -p \"$1${f%/*}\" && cp -L \"$f\" \"$1$f\" || exit 1; done";
  ASSERT_EQ(0, std::system(("set -- '" + dir("jail") + "'; " + copy).c_str()));
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
