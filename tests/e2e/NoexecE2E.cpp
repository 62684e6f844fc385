// Folders in which no program may run (the mount option "noexec"): what was extracted there cannot
// be started. In a mount namespace of the run's own.
#include <sys/mount.h>
#include <unistd.h>

#include <exception>
#include <filesystem>

#include "e2e/LauncherTest.h"
#include "torture/PrivateMounts.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

// The folder itself, mounted over itself: what is left in it is seen from outside, too. A user who
// is root of a namespace only may not take the two other options away.
bool forbidPrograms(const std::string& folder) {
  const char* path = folder.c_str();
  return mount(path, path, nullptr, MS_BIND, nullptr) == 0 &&
         mount(nullptr, path, nullptr, MS_BIND | MS_REMOUNT | MS_NOEXEC | MS_NOSUID | MS_NODEV,
               nullptr) == 0;
}

class Noexec : public LauncherTest {
 protected:
  void SetUp() override {
    const std::string problem = torture::whyNoPrivateMounts();
    if (!problem.empty()) {
      GTEST_SKIP() << problem;
    }
    fs::create_directories(mine());
    setStdin(mine());
    setPrepareChild([this] {
      try {
        torture::enterPrivateMounts();
      } catch (const std::exception&) {
        _exit(124);
      }
      if (!forbidPrograms(tempDir()) || !forbidPrograms(mine())) {
        _exit(124);
      }
    });
  }

  // A folder of the user's own, where a JVM may be installed.
  std::string mine() const { return dir("mine"); }
};

TEST_F(Noexec, AnInstallerThatMayNotRunIsTold) {
  for (const char* option : {"0", "1", "2"}) {
    SCOPED_TRACE(option);
    forgetFiles();
    fs::remove(logFile());
    embed(FILE_TYPE_JVM_INSTALLER, 5, "install", "#!/bin/sh\necho 'JVM_EXE: bin/java' >jvm\n");
    embedLaunchScript();
    embedInstructions(
        {std::string("INSTALL_JVM ") + option, "JMP0 @N1@ none", "NONSENSE", ":none"});
    pack();
    const Result result = run();
    EXPECT_EQ(0, result.status) << result.out;
    const std::string log = withoutIndex(result.log);
    EXPECT_EQ(0U, log.find("WARNING: The JVM installer ended with status 126.\nErrOut:\n")) << log;
    EXPECT_TRUE(
        log.ends_with("install: Permission denied\n\n"
                      "ERROR: Invalid bundled JVM. Missing 'jvm' file.\n"))
        << log;
    EXPECT_TRUE(fs::is_empty(mine()));
  }
}

TEST_F(Noexec, AHandOverThatMayNotRunLeavesTheRunAsItWas) {
  embedSetup("exit 6");
  embed(FILE_TYPE_LAUNCHER, 9, "inner", test::readFile(stubOf(CORVANE_STUB)));
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstructions({"FIND_JVM 0 0", "EXECUTE_LAUNCHER 3", "LAUNCH @S2@ 0"});
  EXPECT_EQ(6, run().status);
}

}  // namespace
}  // namespace e2e
