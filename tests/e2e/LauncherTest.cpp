#include "e2e/LauncherTest.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <thread>

#include "authoring/LauncherFileWriter.h"
#include "tagfile/StreamUtils.h"

namespace fs = std::filesystem;

namespace e2e {

namespace {

constexpr auto kPatience = std::chrono::seconds(60);
constexpr const char* kSeparator = "------------------\n";

bool waitUntil(std::chrono::milliseconds patience, const std::function<bool()>& done) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!done()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

void redirect(int target, const std::string& path, int flags) {
  const int fd = open(path.c_str(), flags, 0666);
  dup2(fd, target);
  close(fd);
}

std::string readIfThere(const std::string& path) {
  return fs::exists(path) ? test::readFile(path) : std::string();
}

std::string environmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

}  // namespace

std::string stubOf(const std::string& built) {
  const std::string folder = environmentVariable("CORVANE_TEST_STUBS");
  return folder.empty() ? built : folder + "/" + fs::path(built).filename().string();
}

bool waitForFile(const std::string& path) {
  return waitUntil(std::chrono::seconds(10), [&path] { return fs::exists(path); });
}

bool waitForText(const std::string& path, const std::string& text) {
  return waitUntil(std::chrono::seconds(10),
                   [&] { return readIfThere(path).find(text) != std::string::npos; });
}

bool waitUntilAsleep(pid_t pid) {
  const std::string path = "/proc/" + std::to_string(pid) + "/stat";
  return waitForText(path, ") S ");
}

std::string withoutIndex(const std::string& log) {
  std::string rest;
  std::size_t pos = 0;
  while (pos < log.size()) {
    const std::size_t end = std::min(log.find('\n', pos), log.size() - 1);
    const std::string line = log.substr(pos, end + 1 - pos);
    const bool isIndex = line.starts_with("file type: ") || line.starts_with("  file id: ") ||
                         line.starts_with("  length: ") || line.starts_with("  offset: ") ||
                         line.starts_with("  file name: ");
    if (!isIndex && line != kSeparator) {
      rest += line;
    }
    pos = end + 1;
  }
  return rest;
}

LauncherTest::LauncherTest() : m_stub(stubOf(CORVANE_STUB)), m_launcherPath(dir("app/setup")) {
  for (const char* name : {"app", "temp", "current", "trap", "jvms"}) {
    fs::create_directories(dir(name));
  }
  m_env = {{"PATH", "/usr/bin:/bin"}, {"HOME", dir("home")}, {"TMPDIR", dir("trap")}};
#ifdef CORVANE_COVERAGE
  m_env["GCOV_ERROR_FILE"] = "/dev/null";  // see fixSurroundings
#endif
}

void LauncherTest::embed(int type, int id, const std::string& name, const std::string& bytes) {
  m_files.push_back({type, id, name, bytes});
}

void LauncherTest::embedInstructions(const std::vector<std::string>& lines) {
  std::string text = "INSTRUCTIONS:\n";
  for (const std::string& line : lines) {
    text += line + "\n";
  }
  embed(FILE_TYPE_INSTRUCTIONS, 1, "setup.ins", text + "/:\n");
}

void LauncherTest::embedLaunchScript(const std::string& extraTags) {
  embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "setup.lsc",
        "DESC: Sample\n"
        "COMMAND: \"\"\"@JVM_HOME@/@JVM_EXE@\"\" %CP%(\"\"wizard.jar\"\") Wizard\"\n" +
            extraTags);
}

int LauncherTest::embedJVM(const std::string& tags) {
  const int id = m_nextJVM++;
  embed(FILE_TYPE_JVM, id, "jvm" + std::to_string(id) + ".jvm",
        "DESC: Java 17\nJVM_EXE: bin/java\nJVM_PROPERTIES:\njava.version=17...\n/:\n"
        "CLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\nSYSTEM: -D\nSYSTEM_SEPARATOR: =\n" +
            tags);
  return id;
}

std::string LauncherTest::makeJVM(const std::string& name, const std::string& version,
                                  const std::string& wizard) {
  const std::string home = dir("jvms/" + name);
  test::writeScript(home + "/bin/java",
                    "#!/bin/sh\n"
                    "for argument; do\n"
                    "  if [ \"$argument\" = Verify ]; then\n"
                    "    printf '%s\\n' 1739021872 " +
                        version +
                        "\n"
                        "    exit 0\n"
                        "  fi\n"
                        "done\n" +
                        wizard + "\n");
  return home;
}

void LauncherTest::embedSetup(const std::string& wizard) {
  setEnv("FAKE_HOME", makeJVM("java17", "17.0.1", wizard));
  setEnv("RECORD", dir("record.txt"));
  embedJVM("PLATFORM_HINT: FAKE_HOME\n");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "not looked at by the stand-in");
  embedLaunchScript();
  embedInstructions({"FIND_JVM 0 1", "LAUNCH @S2@ 0"});
}

void LauncherTest::pack() {
  test::writeScript(m_launcherPath, "");
  const FilePtr file = openFile(m_launcherPath.c_str(), "wb");
  authoring::LauncherFileWriter writer(file.get());
  writer.addStub(test::readFile(m_stub));
  for (const EmbeddedFile& embedded : m_files) {
    authoring::IndexRecord record;
    record.type = embedded.type;
    record.id = embedded.id;
    record.name = embedded.name;
    writer.addFile(record, embedded.bytes);
  }
  writer.finish(m_purpose);
  m_packed = true;
}

Result LauncherTest::run(const std::vector<std::string>& args) {
  std::vector<std::string> all{"-cv:tempdir", tempDir(), "-cv:log", logFile()};
  all.insert(all.end(), args.begin(), args.end());
  return runBare(all);
}

Result LauncherTest::runBare(const std::vector<std::string>& args) {
  return finish(start(args));
}

pid_t LauncherTest::start(const std::vector<std::string>& args) {
  if (!m_packed) {
    pack();
  }
  test::writeFile(dir("stdin"), m_stdin);
  m_treeBefore = test::listTree(dir("app"));
  std::vector<std::string> environment;
  std::transform(m_env.begin(), m_env.end(), std::back_inserter(environment),
                 [](const auto& entry) { return entry.first + "=" + entry.second; });
  std::string path = m_startPath.empty() ? m_launcherPath : m_startPath;
  std::vector<std::string> words{m_programName.value_or(path)};
  if (const std::string emulator = environmentVariable("CORVANE_TEST_EMULATOR");
      !emulator.empty()) {
    words = {emulator, "-0", words[0], path};
    path = emulator;
  }
  words.insert(words.end(), args.begin(), args.end());
  const auto pointers = [](std::vector<std::string>& strings) {
    std::vector<char*> result;
    std::transform(strings.begin(), strings.end(), std::back_inserter(result),
                   [](std::string& s) { return s.data(); });
    result.push_back(nullptr);
    return result;
  };
  const std::vector<char*> argv = pointers(words);
  const std::vector<char*> envp = pointers(environment);
  const pid_t pid = fork();
  if (pid == 0) {
    setsid();
    umask(022);
    redirect(0, dir("stdin"), O_RDONLY);
    redirect(1, dir("out.txt"), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND);
    redirect(2, dir("err.txt"), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND);
    if (chdir(currentDir().c_str()) != 0) {
      _exit(125);
    }
    if (m_prepareChild) {
      m_prepareChild();
    }
    execve(path.c_str(), argv.data(), envp.data());
    _exit(126);
  }
  return pid;
}

int LauncherTest::waitFor(pid_t pid) {
  int status = 0;
  const bool ended = waitUntil(kPatience, [&] { return waitpid(pid, &status, WNOHANG) == pid; });
  if (!ended) {
    ADD_FAILURE() << "the launcher did not end";
    kill(-pid, SIGKILL);
    waitpid(pid, &status, 0);
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void LauncherTest::expectNoProcessLeft(pid_t group) {
  // A process that has been told to end may need a moment.
  const bool gone = waitUntil(std::chrono::seconds(2),
                              [group] { return kill(-group, 0) != 0 && errno == ESRCH; });
  if (!gone) {
    ADD_FAILURE() << "a process was left behind";
    kill(-group, SIGKILL);
  }
}

Result LauncherTest::finish(pid_t pid) {
  const int status = waitFor(pid);
  expectNoProcessLeft(pid);
  if (!m_leftoversExpected) {
    expectNothingLeft();
  }
  return {status, test::readFile(dir("out.txt")), test::readFile(dir("err.txt")),
          readIfThere(logFile())};
}

void LauncherTest::expectNothingLeft() {
  const std::vector<std::string> nothing;
  EXPECT_EQ(nothing, test::listTree(tempDir()));
  EXPECT_EQ(nothing, test::listTree(dir("trap")));
  EXPECT_EQ(nothing, test::listTree(currentDir()));
  EXPECT_EQ(m_treeBefore, test::listTree(dir("app")));
}

}  // namespace e2e
