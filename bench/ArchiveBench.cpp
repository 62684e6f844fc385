// Loading a launcher that carries many files, which is to grow no faster than their number (compare
// items a second), and copying a file out of it beside a plain read and write loop with the same
// chunk (wanted: within 1.1 times of it; compare the lines of one run).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "archive/LauncherInputFiles.h"
#include "platform/PlatformImpl.h"
#include "support/LauncherFiles.h"
#include "support/TestAccess.h"
#include "tagfile/StreamUtils.h"

namespace {

constexpr std::size_t kChunk = 61439;

// A launcher file in a folder of its own, both removed at the end of the program.
class LauncherOnDisk {
 public:
  explicit LauncherOnDisk(const std::vector<test::StoredFile>& files) {
    const char* const base = std::getenv("TMPDIR");
    m_folder = std::string(base == nullptr ? "/tmp" : base) + "/corvane-bench-XXXXXX";
    if (mkdtemp(m_folder.data()) == nullptr) {
      std::abort();
    }
    const std::string bytes = test::launcherFileBytes(files);
    const FilePtr file = openFile(path().c_str(), "wb");
    std::fwrite(bytes.data(), 1, bytes.size(), file.get());
  }
  ~LauncherOnDisk() {
    for (const std::string& file : {path(), copy()}) {
      unlink(file.c_str());
    }
    rmdir(m_folder.c_str());
  }
  LauncherOnDisk(const LauncherOnDisk&) = delete;
  LauncherOnDisk& operator=(const LauncherOnDisk&) = delete;

  const std::string& folder() const { return m_folder; }
  std::string path() const { return m_folder + "/launcher"; }
  std::string copy() const { return m_folder + "/copy"; }

 private:
  std::string m_folder;
};

// --- Loading ---

void loadAll(benchmark::State& state, std::int32_t type, const std::string& bytes) {
  std::vector<test::StoredFile> files;
  for (std::int32_t i = 0; i < state.range(0); ++i) {
    files.push_back({type, i, "file" + std::to_string(i), bytes});
  }
  const LauncherOnDisk launcher(files);
  LauncherTestAccess::setLauncherFileName(launcher.path());
  for (auto _ : state) {
    LauncherInputFiles inputs;
    inputs.load(true);
    benchmark::DoNotOptimize(inputs.getFileIndex().size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_load_jars(benchmark::State& state) {
  loadAll(state, FILE_TYPE_JAR, "PK\n");
}

void BM_load_jvm_files(benchmark::State& state) {
  loadAll(state, FILE_TYPE_JVM, "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES: a = b\n");
}

// --- Extraction ---

void copyPlainly(const LauncherOnDisk& launcher, std::int64_t offset, std::int64_t length) {
  const int from = open(launcher.path().c_str(), O_RDONLY | O_CLOEXEC);
  const int to = open(launcher.copy().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  lseek(from, static_cast<off_t>(offset), SEEK_SET);
  const auto buffer = std::make_unique<char[]>(kChunk);
  while (length > 0) {
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(length, kChunk));
    const ssize_t count = read(from, buffer.get(), wanted);
    if (count <= 0 || write(to, buffer.get(), static_cast<std::size_t>(count)) != count) {
      std::abort();
    }
    length -= count;
  }
  close(from);
  close(to);
}

const LauncherOnDisk& launcherWith(std::int64_t megabytes) {
  static std::unique_ptr<LauncherOnDisk> launcher;
  static std::int64_t held = 0;
  if (held != megabytes) {
    const std::string bytes(static_cast<std::size_t>(megabytes) << 20, 'x');
    launcher.reset();
    launcher = std::make_unique<LauncherOnDisk>(
        std::vector<test::StoredFile>{{FILE_TYPE_JAR, 1, "copy", bytes}});
    held = megabytes;
  }
  return *launcher;
}

// Both write over the same file; the time of the disk itself is left out as far as it has a cache.
void measureCopies(benchmark::State& state, bool plainly) {
  const LauncherOnDisk& launcher = launcherWith(state.range(0));
  LauncherTestAccess::setLauncherFileName(launcher.path());
  PlatformImpl::setSilent(true);
  LauncherInputFiles inputs;
  inputs.load(false);
  const FileIndexEntry& entry = *inputs.getFileIndex().at(0);
  for (auto _ : state) {
    if (plainly) {
      copyPlainly(launcher, entry.getOffsetToBytes(), entry.getFileLength());
    } else {
      entry.extract(launcher.folder().c_str());
    }
  }
  state.SetBytesProcessed(state.iterations() * entry.getFileLength());
}

void BM_copy_plainly(benchmark::State& state) {
  measureCopies(state, true);
}

void BM_extract(benchmark::State& state) {
  measureCopies(state, false);
}

BENCHMARK(BM_load_jars)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_load_jvm_files)->Arg(1000)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_copy_plainly)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_extract)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_copy_plainly)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_extract)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace
