#include "authoring/NewCommand.h"

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>

#include "authoring/NewSetup.h"

namespace authoring {
namespace {

// One word for the shell.
std::string shellWord(const std::string& text) {
  constexpr const char* kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._+,:=@%-";
  if (!text.empty() && text.find_first_not_of(kPlain) == std::string::npos) {
    return text;
  }
  std::string word = "'";
  for (const char c : text) {
    word += c == '\'' ? "'\\''" : std::string(1, c);
  }
  return word + "'";
}

bool isUnanswered(const NewSetupOptions& options) {
  return options.jars.empty() && options.mainClass.empty() && options.title.empty() &&
         options.java.empty();
}

int makeNew(const NewSetupOptions& given) {
  const bool asks = isUnanswered(given) && isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
  const NewSetupOptions options = asks ? askForOptions(given) : completeOptions(given);
  std::string line = options.folder + ":";
  for (const std::string& name : makeSetup(options)) {
    line += " " + name;
  }
  line += "\nNow run: corvane-pack pack " + shellWord(options.folder + "/manifest.json") +
          " --output FILE\n";
  std::fputs(line.c_str(), stdout);
  return 0;
}

// An empty variable of a script is not meant to give the default.
const CLI::Validator& notEmpty() {
  static const CLI::Validator validator(
      [](std::string& text) {
        return std::string(text.empty() ? "it is empty; leave it out for the default" : "");
      },
      "");
  return validator;
}

}  // namespace

void addNewCommand(CLI::App& app, std::function<int()>& chosen) {
  const auto options = std::make_shared<NewSetupOptions>();
  CLI::App& command = *app.add_subcommand(
      "new", "Make a folder with the files of a new setup; asks when no option is given");
  command.add_option("DIR", options->folder, "The new or empty folder")->required();
  command.add_option("--jar", options->jars, "A jar of your program; may be repeated")
      ->type_name("FILE");
  command
      .add_option("--main", options->mainClass,
                  "The class that is started; default: what the first jar says")
      ->type_name("CLASS")
      ->check(notEmpty());
  command.add_option("--title", options->title, "What users see; default: the folder's name")
      ->type_name("TEXT")
      ->check(notEmpty());
  command
      .add_option("--java", options->java,
                  "17+, 8..17 or 21; default: what the class was compiled for, and later")
      ->type_name("RANGE")
      ->check(notEmpty());
  command.add_flag("--64-bit", options->needs64Bit, "Take no 32-bit Java");
  command.callback([options, &chosen] { chosen = [options] { return makeNew(*options); }; });
}

}  // namespace authoring
