// The table of functions says what the authors' page says.
#include "launchscript/LaunchScriptGrammar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <string>

#include "support/TestFiles.h"

namespace {

TEST(LaunchScriptGrammar, HoldsTheFunctionsOfThePage) {
  const std::string page = test::readFile(CORVANE_DOCS_DIR "/launch-script.md");
  const std::size_t begin = page.find("\n| Function |");
  ASSERT_NE(std::string::npos, begin);
  const std::string table = page.substr(begin, page.find("\n\n", begin) - begin);
  static const std::regex call("\n\\| `%([A-Z_]+)%\\(([^)]*)\\)`");
  std::set<std::string> wanted;
  for (std::sregex_iterator match(table.begin(), table.end(), call), end; match != end; ++match) {
    const std::string name = (*match)[1];
    const std::string args = (*match)[2];
    wanted.insert(name);
    const FunctionGrammar* const function = findFunction(name);
    ASSERT_NE(nullptr, function) << name;
    const long count = args.empty() ? 0 : 1 + std::count(args.begin(), args.end(), ',');
    EXPECT_LE(function->leastArguments, count) << name;
    EXPECT_GE(function->mostArguments, count) << name;
  }
  std::set<std::string> names;
  for (const FunctionGrammar& function : kFunctionGrammar) {
    EXPECT_TRUE(names.insert(function.name).second) << function.name;
  }
  EXPECT_EQ(wanted, names);
}

TEST(LaunchScriptGrammar, FindsAFunctionByItsWholeName) {
  ASSERT_NE(nullptr, findFunction("CP"));
  EXPECT_EQ(Function::kCP, findFunction("CP")->function);
  for (const char* const other : {"", "C", "CPP", "cp", "%CP"}) {
    EXPECT_EQ(nullptr, findFunction(other)) << other;
  }
}

}  // namespace
