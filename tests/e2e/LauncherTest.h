// LauncherTest: the fixture of the end-to-end tests.
//
// A test embeds files, sets what differs from the usual surroundings, and runs a real launcher
// file in a closed environment: an empty current folder, a temporary folder of its own, fixed PATH
// and umask, no LANG, no standard input. After each run the fixture fails the test when the
// launcher left anything behind: a file or folder in the temporary folder, the folder of TMPDIR,
// the current folder or beside the launcher, or a process.
#ifndef CORVANE_TESTS_E2E_LAUNCHERTEST_H
#define CORVANE_TESTS_E2E_LAUNCHERTEST_H

#include <gtest/gtest.h>
#include <sys/types.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "archive/LauncherFileFormat.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

namespace e2e {

struct EmbeddedFile {
  int type;
  int id;
  std::string name;
  std::string bytes;
};

struct Result {
  int status;       // exit status; -N when signal N ended the launcher
  std::string out;  // standard output
  std::string err;  // standard error
  std::string log;  // empty when there is no log file
};

// A stub of this build. With CORVANE_TEST_STUBS in the environment it is the one of the same name
// in that folder, which may be for another machine; CORVANE_TEST_EMULATOR then names the program
// that runs it.
std::string stubOf(const std::string& built);

class LauncherTest : public ::testing::Test {
 protected:
  LauncherTest();

  // --- What the launcher file holds ---

  void embed(int type, int id, const std::string& name, const std::string& bytes);
  void forgetFiles() { m_files.clear(); }
  void forgetFiles(int type) {
    std::erase_if(m_files, [type](const EmbeddedFile& file) { return file.type == type; });
  }
  void embedInstructions(const std::vector<std::string>& lines);
  // A launch script that runs the stand-in wizard of the JVM found.
  void embedLaunchScript(const std::string& extraTags = "");
  // A jvm file (id 10 and up) that demands java.version to begin with "17". `tags` are added.
  int embedJVM(const std::string& tags);
  // A whole setup: a Java 17 named by FAKE_HOME that runs `wizard`, a verify archive, a launch
  // script and a script that finds and launches. RECORD names a file for the wizard to write into.
  void embedSetup(const std::string& wizard);
  void setPurpose(int purpose) { m_purpose = purpose; }
  // The bare launcher in front of the embedded files, where it is not the usual one.
  void setStub(const std::string& path) { m_stub = stubOf(path); }

  // A JVM whose java is a shell script: asked to verify it reports the version, asked to run the
  // wizard it runs `wizard` (shell commands; "$@" are java's arguments). Returns its home.
  std::string makeJVM(const std::string& name, const std::string& version,
                      const std::string& wizard = "exit 0");

  // --- Surroundings ---

  const std::string& scratch() const { return m_dir.path(); }
  std::string dir(const std::string& name) const { return m_dir / name; }
  std::string tempDir() const { return dir("temp"); }
  std::string currentDir() const { return dir("current"); }
  std::string logFile() const { return dir("log.txt"); }
  void setLauncherPath(const std::string& path) { m_launcherPath = path; }
  const std::string& launcherPath() const { return m_launcherPath; }
  void setEnv(const std::string& name, const std::string& value) { m_env[name] = value; }
  void unsetEnv(const std::string& name) { m_env.erase(name); }
  void setStdin(const std::string& text) { m_stdin = text; }
  // The path by which the launcher is started, where it differs from that of its file.
  void setStartPath(const std::string& path) { m_startPath = path; }
  // What the launcher is told as argv[0], where it differs from that path.
  void setProgramName(const std::string& name) { m_programName = name; }
  // Called in the child, just before the launcher starts.
  void setPrepareChild(std::function<void()> prepare) { m_prepareChild = std::move(prepare); }

  // --- Running ---

  // Packs and runs the launcher with "-cv:tempdir TEMP -cv:log LOG" in front of `args`.
  Result run(const std::vector<std::string>& args = {});
  // Runs it with exactly these arguments.
  Result runBare(const std::vector<std::string>& args);
  // Starts without waiting; `finish` waits, checks and collects.
  pid_t start(const std::vector<std::string>& args);
  Result finish(pid_t pid);
  // For runs that are meant to leave files behind: the test looks at them itself.
  void expectLeftovers() { m_leftoversExpected = true; }

  // Writes the launcher file now (run does it otherwise).
  void pack();
  // Says that the test has written the launcher file itself.
  void usePackedFile() { m_packed = true; }

 private:
  int waitFor(pid_t pid);
  void expectNoProcessLeft(pid_t group);
  void expectNothingLeft();

  test::TempDir m_dir;
  std::vector<EmbeddedFile> m_files;
  int m_purpose = 1;
  std::string m_stub;
  int m_nextJVM = 10;
  std::string m_launcherPath;
  std::string m_startPath;
  std::optional<std::string> m_programName;
  std::map<std::string, std::string> m_env;
  std::string m_stdin;
  std::function<void()> m_prepareChild;
  bool m_packed = false;
  bool m_leftoversExpected = false;
  std::vector<std::string> m_treeBefore;
};

using test::normalised;
// The lines of the log without the file index at its beginning and the separator line.
std::string withoutIndex(const std::string& log);
// Wait at most ten seconds; false when it does not come to it: until `path` exists, until it holds
// `text`, until the process has nothing to do but wait (only where the system tells).
bool waitForFile(const std::string& path);
bool waitForText(const std::string& path, const std::string& text);
bool waitUntilAsleep(pid_t pid);

}  // namespace e2e

#endif
