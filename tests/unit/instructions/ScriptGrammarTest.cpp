// The table of commands says what the authors' page says.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <string>

#include "instructions/ScriptGrammar.h"
#include "support/TestFiles.h"

namespace {

using Counts = std::map<std::string, std::size_t>;  // of the arguments, by command

std::size_t countArguments(const std::string& cell) {
  const bool isEmpty = cell.find_first_not_of(' ') == std::string::npos;
  return isEmpty ? 0 : 1 + static_cast<std::size_t>(std::count(cell.begin(), cell.end(), ';'));
}

TEST(ScriptGrammar, HoldsTheCommandsOfThePage) {
  const std::string page = test::readFile(CORVANE_DOCS_DIR "/instructions.md");
  const std::size_t begin = page.find("\n| Command |");
  ASSERT_NE(std::string::npos, begin);
  const std::string table = page.substr(begin, page.find("\n\n", begin) - begin);
  static const std::regex row("\n\\| `([A-Z0-9_]+)` \\|([^|]*)\\|");
  Counts wanted = {{"//", 0}};
  for (std::sregex_iterator match(table.begin(), table.end(), row), end; match != end; ++match) {
    wanted[(*match)[1]] = countArguments((*match)[2]);
  }
  Counts counts;
  for (const CommandGrammar& command : kCommandGrammar) {
    EXPECT_TRUE(counts.emplace(command.name, command.arguments.size()).second) << command.name;
  }
  EXPECT_EQ(wanted, counts);
}

TEST(ScriptGrammar, FindsACommandByItsWholeName) {
  const CommandGrammar* const command = findCommand("LAUNCH");
  ASSERT_NE(nullptr, command);
  EXPECT_EQ(Command::kLaunch, command->command);
  for (const char* const other : {"", "LAUN", "LAUNCHX", "launch", "/", "///"}) {
    EXPECT_EQ(nullptr, findCommand(other)) << other;
  }
}

}  // namespace
