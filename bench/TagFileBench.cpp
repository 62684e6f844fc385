// Loading a tag file of 100 MB, in lines of 60 bytes, beside reading the same lines with
// getline(3). The wanted ratio is 3 at most for time (compare the lines of one run), and 3 times
// the file's size for memory (the counter mem/file).
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "tagfile/StreamUtils.h"
#include "tagfile/TagFile.h"

namespace {

constexpr long kLineLength = 60;
constexpr long kLines = 100'000'000 / kLineLength;

// The files have no name: they vanish with the program.
using WriteLine = void (*)(std::FILE* file, long number);

FilePtr makeFile(const char* head, WriteLine writeLine, const char* tail) {
  FilePtr file(std::tmpfile());
  std::fputs(head, file.get());
  for (long i = 0; i < kLines; ++i) {
    writeLine(file.get(), i);
  }
  std::fputs(tail, file.get());
  std::fflush(file.get());
  return file;
}

// One tag with a value on each line, as a long script has.
std::FILE* blockFile() {
  static const FilePtr file = makeFile(
      "INSTRUCTIONS:\n",
      [](std::FILE* f, long i) { std::fprintf(f, "  SET S1 = \"%-*ld\"\n", 46, i); }, "/:\n");
  return file.get();
}

// A tag of its own on each line.
std::FILE* tagsFile() {
  static const FilePtr file = makeFile(
      "", [](std::FILE* f, long i) { std::fprintf(f, "TAG%09ld: %046ld\n", i, i); }, "");
  return file.get();
}

void readLines(std::FILE* file) {
  std::rewind(file);
  char* line = nullptr;
  std::size_t capacity = 0;
  while (getline(&line, &capacity, file) >= 0) {
    benchmark::DoNotOptimize(line);
  }
  std::free(line);
}

std::unique_ptr<TagFile> loadFile(std::FILE* file) {
  auto document = std::make_unique<TagFile>();
  document->load(file, "bench.tag", 0, -1);
  return document;
}

long sizeOf(std::FILE* file) {
  std::fseek(file, 0, SEEK_END);
  return std::ftell(file);
}

// The most memory that a child of ours came to hold during `work`, in bytes.
template <class Work>
double peakMemory(Work work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(0);
  }
  int status = 0;
  struct rusage usage = {};
  wait4(child, &status, 0, &usage);
  return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

// Runs before the others, whose freed memory a child would use instead of new one.
void BM_memory(benchmark::State& state, std::FILE* (*open)()) {
  std::FILE* file = open();
  double more = 0;
  for (auto _ : state) {
    more = peakMemory([file] { loadFile(file).release(); }) - peakMemory([] {});
  }
  state.counters["mem/file"] = more / static_cast<double>(sizeOf(file));
}

void BM_getline(benchmark::State& state, std::FILE* (*open)()) {
  std::FILE* file = open();
  for (auto _ : state) {
    readLines(file);
  }
  state.SetBytesProcessed(state.iterations() * sizeOf(file));
}

void BM_load(benchmark::State& state, std::FILE* (*open)()) {
  std::FILE* file = open();
  for (auto _ : state) {
    std::unique_ptr<TagFile> document = loadFile(file);
    state.PauseTiming();  // giving the memory back is not reading
    document.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * sizeOf(file));
}

BENCHMARK_CAPTURE(BM_memory, block, blockFile)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_memory, tags, tagsFile)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_getline, block, blockFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_load, block, blockFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_getline, tags, tagsFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_load, tags, tagsFile)->Unit(benchmark::kMillisecond);

}  // namespace
