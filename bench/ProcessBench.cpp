// Running a child and collecting its output, beside doing the least that has to be done. Wanted:
// a child that ends at once costs at most 1 ms more than one whose output is thrown away; 100 MB
// of output take at most 1.3 times as long as plain blocking reads (compare the lines of one run);
// an idle child costs no processor time (the counter cpu_us, for a wait of 0.5 s).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/PlatformImpl.h"
#include "platform/ProcessRequest.h"

namespace {

constexpr long kOutputSize = 100'000'000;

int capture(const char* command, SString& output) {
  ProcessRequest request;
  request.command = command;
  request.captures = true;
  const ProcessResult result = PlatformImpl::executeProcess(request);
  output = result.output.text();
  return result.status;
}

// Starts the command through the shell, with both outputs on `output`.
pid_t spawnShell(const char* command, int output) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
  const char* const arguments[] = {"sh", "-c", command, nullptr};
  pid_t child = 0;
  posix_spawn(&child, "/bin/sh", &actions, nullptr, const_cast<char**>(arguments), environ);
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

void waitFor(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  benchmark::DoNotOptimize(status);
}

std::string readPlainly(const char* command) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    std::abort();
  }
  const pid_t child = spawnShell(command, ends[1]);
  close(ends[1]);
  std::string output;
  char chunk[4096];
  ssize_t count = 0;
  while ((count = read(ends[0], chunk, sizeof chunk)) > 0) {
    output.append(chunk, static_cast<std::size_t>(count));
  }
  close(ends[0]);
  waitFor(child);
  return output;
}

// Prints a file of text, so that making the output costs next to nothing.
const char* printMuch() {
  static std::string command;
  if (command.empty()) {
    static std::FILE* file = std::tmpfile();
    for (long i = 0; i < kOutputSize / 50; ++i) {
      std::fprintf(file, "%049ld\n", i);
    }
    std::fflush(file);
    command = "exec cat /proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(fileno(file));
  }
  return command.c_str();
}

void BM_Run_ChildEndsAtOnce_ThrownAway(benchmark::State& state) {
  const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
  for (auto _ : state) {
    waitFor(spawnShell("exit 3", null));
  }
  close(null);
}

void BM_Run_ChildEndsAtOnce_Captured(benchmark::State& state) {
  PlatformImpl::setSilent(true);
  for (auto _ : state) {
    SString output;
    benchmark::DoNotOptimize(capture("exit 3", output));
  }
}

void BM_Output100MB_PlainReads(benchmark::State& state) {
  const char* command = printMuch();
  for (auto _ : state) {
    if (readPlainly(command).size() != kOutputSize) {
      state.SkipWithError("output is missing");
    }
  }
}

void BM_Output100MB_Captured(benchmark::State& state) {
  PlatformImpl::setSilent(true);
  const char* command = printMuch();
  for (auto _ : state) {
    SString output;
    capture(command, output);
    if (output.size() != kOutputSize) {
      state.SkipWithError("output is missing");
    }
  }
}

double ownProcessorMicroseconds() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  const auto microseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_usec);
  };
  return microseconds(usage.ru_utime) + microseconds(usage.ru_stime);
}

void BM_IdleChild_Captured(benchmark::State& state) {
  PlatformImpl::setSilent(true);
  double used = 0;
  for (auto _ : state) {
    const double before = ownProcessorMicroseconds();
    SString output;
    capture("sleep 0.5", output);
    used += ownProcessorMicroseconds() - before;
  }
  state.counters["cpu_us"] = benchmark::Counter(used, benchmark::Counter::kAvgIterations);
}

}  // namespace

BENCHMARK(BM_Run_ChildEndsAtOnce_ThrownAway)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Run_ChildEndsAtOnce_Captured)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Output100MB_PlainReads)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Output100MB_Captured)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_IdleChild_Captured)->UseRealTime()->Unit(benchmark::kMillisecond)->Iterations(2);
