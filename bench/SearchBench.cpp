// The search and the templates grow in proportion to what they are given: candidates of a scan, jvm
// files, class-path entries, macros in a template. Each is measured in three sizes beside a floor
// that does the least that would do; compare the time of one item between the sizes, and with the
// floor.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "archive/FileIndex.h"
#include "jvm/JVMFiles.h"
#include "launchscript/LaunchScript.h"
#include "tagfile/TagFile.h"

namespace {

constexpr int kSmall = 1'000;
constexpr int kMiddle = 10'000;
constexpr int kLarge = 100'000;

void countItems(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

std::string repeated(const std::string& text, std::int64_t count) {
  std::string all;
  for (std::int64_t i = 0; i < count; ++i) {
    all += text;
  }
  return all;
}

void fillJVMFile(TagFile& tags) {
  tags.setTagValue("DESC", "Java");
  tags.setTagValue("JVM_EXE", "bin/java");
  tags.setTagValue("JVM_PROPERTIES", "java.version=17...");
  tags.setTagValue("CLASSPATH", "-cp ");
  tags.setTagValue("CLASSPATH_SEPARATOR", ":");
  tags.setTagValue("NESTED", "<@JVM_EXE@>");
}

// --- Macros ---

void BM_macros(benchmark::State& state, const char* macro) {
  TagFile tags;
  fillJVMFile(tags);
  const JVMFile jvm(tags);
  const LaunchScript script(SString(repeated(macro, state.range(0))), false);
  for (auto _ : state) {
    benchmark::DoNotOptimize(script.resolve(jvm));
  }
  countItems(state);
}

// The floor: one search and one copy for each macro.
void BM_macros_floor(benchmark::State& state) {
  const std::string text = repeated("@JVM_EXE@ ", state.range(0));
  for (auto _ : state) {
    std::string result;
    std::size_t begin = 0;
    for (std::size_t p = text.find('@'); p != std::string::npos; p = text.find('@', begin)) {
      result.append(text, begin, p - begin).append("bin/java");
      begin = text.find('@', p + 1) + 1;
    }
    benchmark::DoNotOptimize(result.append(text, begin));
  }
  countItems(state);
}

// --- Class path ---

void BM_classpath(benchmark::State& state) {
  TagFile tags;
  fillJVMFile(tags);
  const JVMFile jvm(tags);
  const std::string entries = repeated("\"/opt/product/lib/some.jar\",", state.range(0));
  const LaunchScript script(SString("%CP%(" + entries + ")"), false);
  for (auto _ : state) {
    benchmark::DoNotOptimize(script.resolve(jvm));
  }
  countItems(state);
}

void BM_classpath_floor(benchmark::State& state) {
  for (auto _ : state) {
    std::string result = "-cp ";
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      result += i == 0 ? "" : ":";
      result += "/opt/product/lib/some.jar";
    }
    benchmark::DoNotOptimize(result);
  }
  countItems(state);
}

// --- jvm files: a search over all of them by hints that find nothing ---

struct Search {
  explicit Search(std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
      tagFiles.push_back(std::make_unique<TagFile>());
      fillJVMFile(*tagFiles.back());
      files.addJVMFile(std::make_unique<JVMFile>(*tagFiles.back()));
    }
    files.setVerifyClass({"\"verify.jar\"", "\"Verify\""});
  }
  std::vector<std::unique_ptr<TagFile>> tagFiles;
  FileIndex noFiles;
  JVMFiles files{noFiles};
};

void BM_jvm_files(benchmark::State& state) {
  setenv("PATH", "", 1);
  Search search(state.range(0));
  for (auto _ : state) {
    JVMMatchPtrDeque matches;
    search.files.search(matches);
    benchmark::DoNotOptimize(matches.size());
  }
  countItems(state);
}

// The same jvm files, offered one file that a scan has found.
void BM_jvm_files_of_a_found_file(benchmark::State& state) {
  Search search(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(search.files.foundFile("/usr/lib/jvm/java-17/bin/java"));
  }
  countItems(state);
}

// --- Candidates of a scan: all different, so that each one is kept ---

std::vector<SString> candidates(std::int64_t count) {
  std::vector<SString> paths;
  for (std::int64_t i = 0; i < count; ++i) {
    paths.emplace_back(("/usr/lib/jvm/java-" + std::to_string(i) + "/bin/java").c_str());
  }
  return paths;
}

void BM_candidates(benchmark::State& state) {
  const std::vector<SString> paths = candidates(state.range(0));
  for (auto _ : state) {
    Search search(1);
    for (const SString& path : paths) {
      search.files.foundFile(path);
    }
    benchmark::DoNotOptimize(search.files.getJVMFileCount());
  }
  countItems(state);
}

void BM_candidates_floor(benchmark::State& state) {
  const std::vector<SString> paths = candidates(state.range(0));
  for (auto _ : state) {
    std::unordered_set<std::string> homes;
    for (const SString& path : paths) {
      homes.emplace(path.view().substr(0, path.size() - 9));
    }
    benchmark::DoNotOptimize(homes.size());
  }
  countItems(state);
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(kSmall)->Arg(kMiddle)->Arg(kLarge)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(BM_macros_floor)->Apply(sizes);
BENCHMARK_CAPTURE(BM_macros, tags, "@JVM_EXE@ ")->Apply(sizes);
BENCHMARK_CAPTURE(BM_macros, tags_in_tags, "@NESTED@ ")->Apply(sizes);
BENCHMARK_CAPTURE(BM_macros, functions, "%IF_EXISTS%(\"DESC\",\"text\") ")->Apply(sizes);
BENCHMARK_CAPTURE(BM_macros, environment, "#NOT_SET# ")->Apply(sizes);
BENCHMARK(BM_classpath_floor)->Apply(sizes);
BENCHMARK(BM_classpath)->Apply(sizes);
BENCHMARK(BM_jvm_files)->Apply(sizes);
BENCHMARK(BM_jvm_files_of_a_found_file)->Apply(sizes);
BENCHMARK(BM_candidates_floor)->Apply(sizes);
BENCHMARK(BM_candidates)->Apply(sizes);

}  // namespace
