#include "support/Trees.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "support/TestFiles.h"

namespace fs = std::filesystem;

namespace test {

void makeEntry(const std::string& folder, std::string entry) {
  if (const std::size_t arrow = entry.find('>'); arrow != std::string::npos) {
    const fs::path path = folder + "/" + entry.substr(0, arrow);
    fs::create_directories(path.parent_path());
    fs::create_symlink(entry.substr(arrow + 1), path);
    return;
  }
  const char kind = entry.back();
  if (kind == '/') {
    fs::create_directories(folder + "/" + entry);
  } else if (kind == '|' || kind == '=') {
    entry.pop_back();
    fs::create_directories(fs::path(folder + "/" + entry).parent_path());
    EXPECT_EQ(0, mknod((folder + "/" + entry).c_str(),
                       kind == '|' ? S_IFIFO | 0600 : S_IFSOCK | 0600, 0));
  } else {
    test::writeFile(folder + "/" + entry, "");
  }
}

std::vector<std::string> below(const std::string& folder, std::vector<std::string> paths) {
  for (std::string& path : paths) {
    EXPECT_EQ(0U, path.find(folder)) << path;
    path.erase(0, folder.size() + 1);
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

}  // namespace test
