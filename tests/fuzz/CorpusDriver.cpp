// Runs a fuzz target once for each file of the folders given, in the order of their names: the
// corpus as an ordinary test. A target that finds a fault aborts.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "support/TestFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void runFile(const std::string& path) {
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);  // the last name before an abort is the file at fault
  const std::string bytes = test::readFile(path);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> paths;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      paths.push_back(entry.path().string());
    }
  }
  std::sort(paths.begin(), paths.end());
  std::for_each(paths.begin(), paths.end(), runFile);
  std::printf("%zu files\n", paths.size());
  return paths.empty() ? 1 : 0;
}
