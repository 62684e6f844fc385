#include "authoring/UsageError.h"

#include <algorithm>
#include <vector>

#include "authoring/FileTypes.h"
#include "authoring/NearestName.h"

namespace authoring {
namespace {

using Names = std::vector<std::string>;

std::string nearest(const std::string& word, const Names& names) {
  const std::vector<std::string_view> views(names.begin(), names.end());
  const std::string_view name = nearestName(word, views);
  return name.empty() ? "" : "; did you mean " + std::string(name) + "?";
}

Names commandNames(const CLI::App& app) {
  Names names;
  for (const CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  return names;
}

Names optionNames(const CLI::App& command) {
  Names names;
  for (const CLI::Option* const option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
  }
  return names;
}

std::string joined(const Names& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : ", ") + name;
  }
  return text;
}

std::string allCommands(const CLI::App& app) {
  return "the commands are " + joined(commandNames(app));
}

std::string unknownCommand(const CLI::App& app, const std::string& word) {
  const std::string hint = nearest(word, commandNames(app));
  return quotedText(printable(word)) + " is no command" +
         (hint.empty() ? "; " + allCommands(app) : hint);
}

// The option that the library's error names, or null.
const CLI::Option* optionIn(const CLI::App& command, const std::string& error) {
  const auto options = command.get_options();
  const auto option = std::find_if(options.begin(), options.end(), [&error](const auto* each) {
    return error.find(each->get_name()) != std::string::npos;
  });
  return option == options.end() ? nullptr : *option;
}

// In our own words where the library's are for developers.
std::string describeValueError(const CLI::App& command, const CLI::ParseError& error) {
  const std::string text = error.what();
  const CLI::Option* const option = optionIn(command, text);
  const bool isMismatch = dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr;
  if (option == nullptr) {
    return printable(text);
  }
  if (isMismatch && option->count() > 1) {
    return option->get_name() + " is given more than once";
  }
  if (isMismatch) {
    return option->get_name() + " lacks its " + option->get_type_name();
  }
  const bool isNoNumber = dynamic_cast<const CLI::ConversionError*>(&error) != nullptr;
  return isNoNumber ? option->get_name() + " takes a whole number of 32 bits" : printable(text);
}

}  // namespace

std::string describeUsageError(const CLI::App& app, const CLI::ParseError& error) {
  const auto chosen = app.get_subcommands();
  const CLI::App& command = chosen.empty() ? app : *chosen.front();
  const Names unknown = app.remaining(true);
  if (unknown.empty()) {
    return chosen.empty() ? "name a command; " + allCommands(app)
                          : describeValueError(command, error);
  }
  const std::string word = unknown.front().substr(0, unknown.front().find('='));
  if (word.starts_with("-") && word != "-") {
    const std::string where = chosen.empty() ? "" : " of " + command.get_name();
    return quotedText(printable(word)) + " is no option" + where +
           nearest(word, optionNames(command));
  }
  return chosen.empty() ? unknownCommand(app, word)
                        : quotedText(printable(unknown.front())) +
                              " is one argument too many for " + command.get_name();
}

}  // namespace authoring
