// What `check` says of a script and what the interpreter does with it agree: lines of any words and
// arguments are given to both.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "authoring/ScriptCheck.h"
#include "fakes/FakeLauncherOperations.h"
#include "instructions/Instructions.h"
#include "support/ScriptSupport.h"

namespace {

// Every command, a label, and words that are none.
std::vector<std::string> firstWords() {
  std::vector<std::string> words = {":x", "find_jvm", "//x"};
  for (const CommandGrammar& command : kCommandGrammar) {
    words.emplace_back(command.name);
  }
  return words;
}

// Each of these variables is 1, which fits everywhere; "1" is a label, too.
const std::vector<std::string> kArguments = {
    "0",           "1",    "2",       "-1",       "x",         "1a",         "@N1@",
    "@S10@",       "@n5@", "@N6@",    "@",        "@1@",       "y",          "S1",
    "N1",          "=",    "N6",      "S1=1",     "\"x\"",     "\"x",        "\"\"",
    "\"x y\"",     "x@",   "+1",      "N1=x",     "=\"",       "\"x\"\"y\"", "1\"",
    "99999999999", "@@",   "a@@@N1@", "@N1@@@@@", "\"@@@S1@\""};

constexpr int kLines = 20000;

authoring::SetupFile scriptOf(const std::string& line) {
  authoring::SetupFile file;
  file.tagFile = std::make_unique<TagFile>();
  test::fillScript(*file.tagFile, {"//", line, ":1", ":x"});
  return file;
}

// Findings about what the script asks for, not about how it is written: the interpreter runs it.
bool isSoft(const authoring::Finding& finding) {
  for (const char* const text :
       {"no jvm file has the number", "of the file index holds no launcher", "looks for a file"}) {
    if (finding.what.find(text) != std::string::npos) {
      return true;
    }
  }
  return finding.severity == authoring::Severity::kWarning;
}

std::vector<std::string> hardFindings(const authoring::SetupFile& script) {
  authoring::Findings findings;
  checkScript(authoring::Setup(), script, findings);
  std::vector<std::string> hard;
  for (const authoring::Finding& finding : findings.all()) {
    if (!isSoft(finding)) {
      hard.push_back(finding.what);
    }
  }
  return hard;
}

// The error of the run, or nothing.
std::string errorOf(const authoring::SetupFile& script) {
  FakeLauncherOperations::reset();
  FakeLauncherOperations::setRecording(false);
  test::setVariables({{"N1", "1"}, {"N5", "1"}, {"S1", "1"}, {"S10", "1"}});
  return test::outcomeOf([&] {
    (void)Instructions(*script.tagFile).execute();
    return "";
  });
}

TEST(ScriptAgreement, CheckFindsWhatTheInterpreterRefusesAndNothingElse) {
  std::mt19937 random(1);
  const auto oneOf = [&](const std::vector<std::string>& texts) {
    return texts[random() % texts.size()];
  };
  const std::vector<std::string> words = firstWords();
  for (int i = 0; i < kLines; ++i) {
    std::string line = oneOf(words);
    for (auto arguments = random() % 5; arguments > 0; --arguments) {
      line += " " + oneOf(kArguments);
    }
    const authoring::SetupFile script = scriptOf(line);
    const std::vector<std::string> findings = hardFindings(script);
    const std::string error = errorOf(script);
    // Whether JMP0 jumps to its label shows at run time only; the label is looked at all the same.
    const bool mayFindMore = line.rfind("JMP0 ", 0) == 0;
    // What a text with an "@" becomes is looked at by the check of the ways through the script.
    const bool mayFindLess = line.find('@') != std::string::npos &&
                             (error.find("Label not found") != std::string::npos ||
                              error.find("Invalid numeric expression (@)") != std::string::npos);
    ASSERT_TRUE(error.empty() == findings.empty() || (error.empty() ? mayFindMore : mayFindLess))
        << "line: " << line << "\nerror: " << error
        << "\nfinding: " << (findings.empty() ? "" : findings.front());
  }
}

}  // namespace
