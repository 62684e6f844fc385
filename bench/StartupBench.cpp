// The stub's start against the floor: a static C program that prints one line.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <stdexcept>

extern char** environ;

namespace {

// Runs the program with its output thrown away and waits for its end.
void runOnce(const char* program, const char* argument) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  char* argv[] = {const_cast<char*>(program), const_cast<char*>(argument), nullptr};
  pid_t pid = 0;
  int status = -1;
  if (posix_spawn(&pid, program, &actions, nullptr, argv, environ) == 0) {
    waitpid(pid, &status, 0);
  }
  posix_spawn_file_actions_destroy(&actions);
  if (status != 0) {
    throw std::runtime_error(program);
  }
}

void startFloor(benchmark::State& state) {
  for (auto _ : state) {
    runOnce(CORVANE_FLOOR, nullptr);
  }
}

void startStub(benchmark::State& state) {
  for (auto _ : state) {
    runOnce(CORVANE_STUB, "-cv:version");
  }
}

BENCHMARK(startFloor)->UseRealTime()->MinTime(2);
BENCHMARK(startStub)->UseRealTime()->MinTime(2);

}  // namespace

BENCHMARK_MAIN();
