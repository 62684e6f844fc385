// Every script that docs/instructions.md shows runs without an error.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/FakeLauncherOperations.h"
#include "instructions/Instructions.h"
#include "support/ScriptSupport.h"
#include "support/TestFiles.h"

namespace {

// What stands between lines of three backquotes.
std::vector<std::string> codeBlocks(const std::string& page) {
  const std::string fence = "```\n";
  std::vector<std::string> blocks;
  std::size_t start = page.find(fence);
  while (start != std::string::npos) {
    start += fence.size();
    const std::size_t end = page.find(fence, start);
    blocks.push_back(page.substr(start, end - start));
    start = page.find(fence, end + fence.size());
  }
  return blocks;
}

std::string asTagFile(const std::string& block) {
  return block.starts_with("INSTRUCTIONS:") ? block : "INSTRUCTIONS:\n" + block + "/:\n";
}

TEST(Recipes, RunWhetherAJavaIsFoundOrNot) {
  const test::TempDir dir;
  const std::vector<std::string> blocks =
      codeBlocks(test::readFile(CORVANE_DOCS_DIR "/instructions.md"));
  EXPECT_EQ(5U, blocks.size());
  for (const std::string& block : blocks) {
    const TagFile script(SString(test::writeFile(dir / "script", asTagFile(block))));
    for (const std::int32_t found : {0, 1}) {
      FakeLauncherOperations::reset();
      FakeLauncherOperations::setHook([found] { LauncherFacts::setLongVariable(1, found); });
      test::setVariables();
      EXPECT_EQ("0",
                test::outcomeOf([&] { return std::to_string(Instructions(script).execute()); }))
          << block;
      EXPECT_GE(3U, FakeLauncherOperations::calls().size()) << block;
    }
  }
}

}  // namespace
