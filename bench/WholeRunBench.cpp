// A whole run that finds its JVM by the first hint, against the two java commands that it consists
// of, run by hand. What is compared is processor time, ours and the children's; the wizard is the
// verify class once more.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "archive/LauncherFileFormat.h"
#include "authoring/LauncherFileWriter.h"
#include "support/TestFiles.h"
#include "tagfile/StreamUtils.h"

extern char** environ;

namespace {

const std::string kHome =
    std::filesystem::canonical(CORVANE_JAVA_EXE).parent_path().parent_path().string();
const std::string kJava = kHome + "/bin/java";
const char* const kProperty = "java.specification.version";

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// Runs the command with its output thrown away; returns the processor time that it took.
double run(const std::vector<std::string>& command) {
  std::vector<char*> argv;
  for (const std::string& word : command) {
    argv.push_back(const_cast<char*>(word.c_str()));
  }
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  int status = -1;
  rusage usage{};
  if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
    wait4(pid, &status, 0, &usage);
  }
  posix_spawn_file_actions_destroy(&actions);
  if (status != 0) {
    throw std::runtime_error(command.front());
  }
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void add(authoring::LauncherFileWriter& writer, int type, const char* name,
         const std::string& bytes) {
  authoring::IndexRecord record;
  record.type = type;
  record.id = type;
  record.name = name;
  writer.addFile(record, bytes);
}

std::string packLauncher(const test::TempDir& dir) {
  const std::string path = test::writeScript(dir / "setup", "");
  const FilePtr file = openFile(path.c_str(), "wb");
  authoring::LauncherFileWriter writer(file.get());
  writer.addStub(test::readFile(CORVANE_STUB));
  add(writer, FILE_TYPE_VERIFY_JAR, "verify.jar", test::readFile(CORVANE_VERIFY_JAR));
  add(writer, FILE_TYPE_JVM, "java.jvm",
      "DESC: Java\nJVM_EXE: bin/java\nPATH_HINT: " + kHome + "\nJVM_PROPERTIES: " + kProperty +
          "=...\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\n");
  add(writer, FILE_TYPE_LAUNCH_SCRIPT, "setup.lsc",
      "COMMAND: @JVM_HOME@/@JVM_EXE@ -cp " CORVANE_VERIFY_JAR " Verify " + std::string(kProperty) +
          "\n");
  add(writer, FILE_TYPE_INSTRUCTIONS, "setup.ins",
      "INSTRUCTIONS:\nFIND_JVM 0 0\nLAUNCH @S2@ 0\n/:\n");
  writer.finish(0);
  return path;
}

void twoCommandsByHand(benchmark::State& state) {
  const std::vector<std::string> command{kJava, "-cp", CORVANE_VERIFY_JAR, "Verify", kProperty};
  for (auto _ : state) {
    state.SetIterationTime(run(command) + run(command));
  }
}

void wholeRun(benchmark::State& state) {
  const test::TempDir dir;
  const std::vector<std::string> command{packLauncher(dir), "-cv:tempdir", dir.path()};
  for (auto _ : state) {
    state.SetIterationTime(run(command));
  }
}

BENCHMARK(twoCommandsByHand)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(60);
BENCHMARK(wholeRun)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(60);

}  // namespace
