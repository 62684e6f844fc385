#include "authoring/ScriptAdvice.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

#include "authoring/NearestName.h"
#include "authoring/ScriptReferences.h"
#include "authoring/TextPatterns.h"

namespace authoring {
namespace {

constexpr std::string_view kComparisons = "=<>!";
constexpr std::size_t kMostLabels = 100;  // in which a misspelt one is looked for
constexpr std::size_t kShortestNear = 3;  // of shorter ones nearly all are near

// What an author could write for an argument of the kind.
const char* exampleOf(ArgumentKind kind) {
  switch (kind) {
    case ArgumentKind::kNumber:
      return "@N1@";
    case ArgumentKind::kLaunchedFile:
    case ArgumentKind::kVerifiedFile:
      return "NUMBER";
    case ArgumentKind::kLauncherPosition:
      return "POSITION";
    case ArgumentKind::kLabel:
      return "LABEL";
    case ArgumentKind::kFileName:
      return "@S2@";
    case ArgumentKind::kAssignment:
      return "N2 = 1";
    case ArgumentKind::kBoolean:
    case ArgumentKind::kSeconds:
    case ArgumentKind::kInstallOption:
      break;
  }
  return "1";
}

std::string allCommandNames() {
  std::string names;
  for (const CommandGrammar& command : kCommandGrammar) {
    if (command.command != Command::kComment) {
      names += (names.empty() ? "" : ", ") + std::string(command.name);
    }
  }
  return names;
}

}  // namespace

std::string exampleOf(const CommandGrammar& command) {
  std::string example(command.name);
  for (const ArgumentGrammar& argument : command.arguments) {
    example.append(" ").append(exampleOf(argument.kind));
  }
  return example;
}

std::string adviceForCommand(const std::string& word) {
  std::string capitals = word;
  std::transform(capitals.begin(), capitals.end(), capitals.begin(),
                 [](unsigned char byte) { return static_cast<char>(std::toupper(byte)); });
  if (looksLikeAComment(word)) {
    return "a comment begins with // and a blank";
  }
  if (findCommand(capitals) != nullptr) {
    return "write " + capitals;
  }
  if (isBareVariable(word.substr(0, word.find('=')))) {
    return "write SET in front of it";
  }
  const std::string near = didYouMean(word, kCommandGrammar);
  return near.empty() ? "the commands are " + allCommandNames() : near;
}

std::string adviceForLabel(const SString& label, const StringDeque& lines) {
  if (label[0] == ':') {
    return "write it without its colon";
  }
  if (label.view().find_first_not_of(kComparisons) == std::string_view::npos) {
    return "nothing can be compared; a JMP0 jumps when its value is 0";
  }
  std::vector<std::string_view> labels;
  for (long i = 1; i < lines.size() && labels.size() < kMostLabels; ++i) {
    if (lines[i][0] == ':') {
      labels.push_back(lines[i].view().substr(1));
    }
  }
  const std::string_view near = nearestName(label, labels);
  return near.size() < kShortestNear ? "write a line :" + std::string(label.view())
                                     : "did you mean " + std::string(near) + "?";
}

}  // namespace authoring
