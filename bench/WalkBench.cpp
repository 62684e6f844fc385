// The search for files by name in a tree of 200,000 files in 12,000 folders, warm, beside find(1).
// The wanted ratio is 0.55 (compare the lines of one run, on a busy machine by the counter cpu_ms:
// the processor time of the search, the system's work included). BM_Pending tells the memory for
// each folder that is still to be walked (the counter bytes/folder; wanted: less than 200).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/FileFindListener.h"
#include "platform/FindFiles.h"
#include "platform/PlatformImpl.h"

namespace {

constexpr int kFolders = 12'000;
constexpr int kFiles = 200'000;
constexpr int kJvms = 4;

void makeFile(const std::string& path) {
  close(open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
}

// Folders of ten folders each, files spread evenly; removed at the end of the program.
class Tree {
 public:
  Tree() {
    char pattern[] = "/tmp/corvane-bench-XXXXXX";
    m_root = mkdtemp(pattern);
    for (int i = 1; i < kFolders; ++i) {
      mkdir(folder(i).c_str(), 0755);
    }
    for (int i = 0; i < kFiles - kJvms; ++i) {
      makeFile(folder(i % kFolders) + "/some-file-" + std::to_string(i) + ".txt");
    }
    for (int i = 0; i < kJvms; ++i) {
      const std::string bin = folder(kFolders / kJvms * i) + "/bin";
      mkdir(bin.c_str(), 0755);
      makeFile(bin + "/java");
    }
  }
  ~Tree() {
    std::error_code ignored;
    std::filesystem::remove_all(m_root, ignored);
  }
  const std::string& root() const { return m_root; }

 private:
  std::string folder(int number) const {
    return number == 0 ? m_root : folder((number - 1) / 10) + "/folder" + std::to_string(number);
  }
  std::string m_root;
};

const std::string& treeRoot() {
  static const Tree tree;
  return tree.root();
}

class Counter : public FileFindListener {
 public:
  bool foundFile(const SString&) override { return ++found < 0; }
  int found = 0;
};

// The processor time of this process (RUSAGE_SELF) or of its children so far.
double processorMilliseconds(int who) {
  rusage usage = {};
  getrusage(who, &usage);
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

void setProcessorTime(benchmark::State& state, double milliseconds) {
  state.counters["cpu_ms"] = benchmark::Counter(milliseconds, benchmark::Counter::kAvgIterations);
}

void runFind(const char* root) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  const char* const arguments[] = {"find", root, "-path", "*/bin/java", nullptr};
  const char* const environment[] = {"LC_ALL=C", "PATH=/usr/bin:/bin", nullptr};
  pid_t child = 0;
  posix_spawnp(&child, "find", &actions, nullptr, const_cast<char**>(arguments),
               const_cast<char**>(environment));
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  waitpid(child, &status, 0);
}

void BM_Walk_Find(benchmark::State& state) {
  const char* root = treeRoot().c_str();
  runFind(root);
  const double before = processorMilliseconds(RUSAGE_CHILDREN);
  for (auto _ : state) {
    runFind(root);
  }
  setProcessorTime(state, processorMilliseconds(RUSAGE_CHILDREN) - before);
}

void BM_Walk_FindFiles(benchmark::State& state) {
  PlatformImpl::setSilent(true);
  PlatformImpl::setSystemTempDir("/tmp/");
  StringDeque names;
  names.push_back("bin/java");
  const SString root = treeRoot().c_str();
  const double before = processorMilliseconds(RUSAGE_SELF);
  for (auto _ : state) {
    Counter counter;
    FindFiles(names, counter).process(root);
    if (counter.found != kJvms) {
      state.SkipWithError("a file was not found");
    }
  }
  setProcessorTime(state, processorMilliseconds(RUSAGE_SELF) - before);
}

// The memory in use when the last of many folders has been met.
class PendingMeter : public FileNavigator {
 public:
  PendingMeter() : FileNavigator(false) {}
  bool processFile(const SString&) override { return false; }
  bool skipDirectory(const SString&) override {
    const std::size_t now = mallinfo2().uordblks;
    m_first = m_first == 0 ? now : m_first;
    m_most = now > m_most ? now : m_most;
    return false;
  }
  double growth() const { return static_cast<double>(m_most - m_first); }

 private:
  std::size_t m_first = 0;
  std::size_t m_most = 0;
};

void BM_Pending(benchmark::State& state) {
  const std::string root = treeRoot() + "/wide";
  for (int i = -1; i < kFolders; ++i) {
    mkdir((i < 0 ? root : root + "/a-folder-" + std::to_string(i)).c_str(), 0755);
  }
  double growth = 0;
  for (auto _ : state) {
    PendingMeter meter;
    meter.process(root.c_str());
    growth = meter.growth();
  }
  state.counters["bytes/folder"] = growth / kFolders;
  std::error_code ignored;
  std::filesystem::remove_all(root, ignored);
}

}  // namespace

BENCHMARK(BM_Walk_Find)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Walk_FindFiles)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Pending)->Iterations(1)->Unit(benchmark::kMillisecond);
