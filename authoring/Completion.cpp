#include "authoring/Completion.h"

#include <algorithm>
#include <vector>

#include "authoring/FileTypes.h"

namespace authoring {
namespace {

using Options = std::vector<const CLI::Option*>;

// --- What there is to complete ---

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_name().empty(); });
}

Options namedOptions(const CLI::App& command) {
  return command.get_options(
      [](const CLI::Option* option) { return !option->get_lnames().empty(); });
}

Options positionals(const CLI::App& command) {
  return command.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

bool takesValue(const CLI::Option& option) {
  return option.get_expected_min() > 0;
}

std::string longName(const CLI::Option& option) {
  return "--" + option.get_lnames().front();
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

std::string commandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const command : commandsOf(app)) {
    names.push_back(command->get_name());
  }
  return joined(names);
}

std::string optionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : namedOptions(command)) {
    names.push_back(longName(*option));
  }
  return joined(names);
}

// How each shell completes a value.
struct ValueRow {
  const char* type;  // as the help shows it
  const char* bash;
  const char* zsh;
  const char* fish;
};

const ValueRow kFiles = {"FILE", "-f", "_files", "-r -F"};
const ValueRow kFolders = {"DIR", "-d", "_files -/", "-x -a '(__fish_complete_directories)'"};
const ValueRow kNothing = {"", "-W ''", " ", "-x"};

std::string typeWords() {
  std::string words = allFileTypeNames();
  words.erase(std::remove(words.begin(), words.end(), ','), words.end());
  return words;
}

const ValueRow& rowOf(const std::string& type) {
  static const std::string bash = "-W '" + typeWords() + "'";
  static const std::string zsh = "(" + typeWords() + ")";
  static const std::string fish = "-x -a '" + typeWords() + "'";
  static const ValueRow types = {"TYPE", bash.c_str(), zsh.c_str(), fish.c_str()};
  static const ValueRow shells = {"SHELL", "-W 'bash zsh fish'", "(bash zsh fish)",
                                  "-x -a 'bash zsh fish'"};
  for (const ValueRow* const row : {&kFiles, &kFolders, &types, &shells}) {
    if (type == row->type) {
      return *row;
    }
  }
  return kNothing;
}

// A positional is a file, unless it is a folder.
const ValueRow& rowOfPositional(const CLI::App& command) {
  const Options options = positionals(command);
  const bool isFolder = !options.empty() && options.front()->get_name(true) == kFolders.type;
  return isFolder ? kFolders : kFiles;
}

// --- bash ---

// "    'pack --stub') reply -f ;;"
std::string bashCase(const std::string& pattern, const std::string& how) {
  return "    " + pattern + ") reply " + how + " ;;\n";
}

std::string bashCases(const CLI::App& command, const std::string& name) {
  std::string cases;
  for (const CLI::Option* const option : namedOptions(command)) {
    if (takesValue(*option)) {
      cases +=
          bashCase("'" + name + " " + longName(*option) + "'", rowOf(option->get_type_name()).bash);
    }
  }
  return cases;
}

std::string bashScript(const CLI::App& app) {
  std::string values = bashCases(app, "");
  std::string words;
  for (const CLI::App* const command : commandsOf(app)) {
    const std::string& name = command->get_name();
    values += bashCases(*command, name);
    words += bashCase("'" + name + " -'*", "-W '" + optionNames(*command) + "'");
    words += bashCase("'" + name + " '*", rowOfPositional(*command).bash);
  }
  return R"(# Completion of corvane-pack for bash.
_corvane_pack() {
  local word=${COMP_WORDS[COMP_CWORD]} last=${COMP_WORDS[COMP_CWORD-1]} command= i
  reply() {
    case $1 in
      -f|-d) compopt -o filenames 2>/dev/null ;;
    esac
    mapfile -t COMPREPLY < <(compgen "$@" -- "$word")
  }
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      -*) ;;
      *) command=${COMP_WORDS[i]}; break ;;
    esac
  done
  COMPREPLY=()
  case "$command $last" in
)" + values +
         R"(    *) false ;;
  esac || case "$command $word" in
)" + words +
         bashCase("' -'*", "-W '" + optionNames(app) + "'") +
         bashCase("' '*", "-W '" + commandNames(app) + "'") +
         R"(  esac
  unset -f reply
}
complete -F _corvane_pack corvane-pack
)";
}

// --- zsh ---

// For single quotes within brackets of _arguments.
std::string zshText(const std::string& text) {
  std::string escaped;
  for (const char byte : text) {
    if (byte == '\'') {
      escaped += "'\\''";
      continue;
    }
    if (byte == ':' || byte == '[' || byte == ']' || byte == '\\') {
      escaped += '\\';
    }
    escaped += byte;
  }
  return escaped;
}

std::string zshOption(const CLI::Option& option) {
  const std::string value =
      takesValue(option) ? ":" + option.get_type_name() + ":" + rowOf(option.get_type_name()).zsh
                         : "";
  const bool isRepeated = takesValue(option) && option.get_expected_max() > 1;
  return "'" + std::string(isRepeated ? "*" : "") + longName(option) + "[" +
         zshText(option.get_description()) + "]" + value + "'";
}

std::string zshScript(const CLI::App& app) {
  std::string commands;
  std::string cases;
  for (const CLI::App* const command : commandsOf(app)) {
    commands += "    '" + command->get_name() + ":" + zshText(command->get_description()) + "'\n";
    cases += "    " + command->get_name() + ") _arguments";
    for (const CLI::Option* const option : namedOptions(*command)) {
      cases += " \\\n      " + zshOption(*option);
    }
    for (const CLI::Option* const option : positionals(*command)) {
      cases += " \\\n      ':" + option->get_name(true) + ":" + rowOfPositional(*command).zsh + "'";
    }
    cases += " ;;\n";
  }
  std::string options;
  for (const CLI::Option* const option : namedOptions(app)) {
    options += " " + zshOption(*option);
  }
  return "#compdef corvane-pack\n# Completion of corvane-pack for zsh.\n_corvane_pack() {\n"
         "  local -a commands=(\n" +
         commands +
         "  )\n  if (( CURRENT == 2 )); then\n"
         "    if [[ $words[2] == -* ]]; then\n      _arguments" +
         options +
         "\n    else\n      _describe command commands\n    fi\n    return\n  fi\n"
         "  shift words\n  (( CURRENT-- ))\n  case $words[1] in\n" +
         cases +
         "  esac\n}\nif [ \"$funcstack[1]\" = _corvane-pack ]; then\n  _corvane_pack \"$@\"\nelse\n"
         "  compdef _corvane_pack corvane-pack\nfi\n";
}

// --- fish ---

std::string fishText(const std::string& text) {
  std::string escaped;
  for (const char byte : text) {
    escaped += byte == '\'' || byte == '\\' ? std::string("\\") + byte : std::string(1, byte);
  }
  return "'" + escaped + "'";
}

std::string fishOptions(const CLI::App& command, const std::string& condition) {
  std::string lines;
  for (const CLI::Option* const option : namedOptions(command)) {
    lines += "complete -c corvane-pack -n '" + condition + "' -l " + option->get_lnames().front() +
             (takesValue(*option) ? std::string(" ") + rowOf(option->get_type_name()).fish : "") +
             " -d " + fishText(option->get_description()) + "\n";
  }
  return lines;
}

std::string fishScript(const CLI::App& app) {
  std::string script = "# Completion of corvane-pack for fish.\ncomplete -c corvane-pack -f\n" +
                       fishOptions(app, "__fish_use_subcommand");
  for (const CLI::App* const command : commandsOf(app)) {
    const std::string seen = "__fish_seen_subcommand_from " + command->get_name();
    const bool isFolder = &rowOfPositional(*command) == &kFolders;
    script += "complete -c corvane-pack -n __fish_use_subcommand -a " + command->get_name() +
              " -d " + fishText(command->get_description()) + "\n" + fishOptions(*command, seen) +
              "complete -c corvane-pack -n '" + seen + "' " +
              (isFolder ? "-a '(__fish_complete_directories)'" : "-F") + "\n";
  }
  return script;
}

}  // namespace

std::string completionScript(const CLI::App& app, const std::string& shell) {
  if (shell == "bash") {
    return bashScript(app);
  }
  return shell == "zsh" ? zshScript(app) : fishScript(app);
}

void addCompletionOption(CLI::App& app) {
  app.add_option_function<std::string>(
         "--completion",
         [&app](const std::string& shell) {
           const std::string script = completionScript(app, shell);
           std::fwrite(script.data(), 1, script.size(), stdout);
           throw CLI::Success();
         },
         "Print what makes a shell complete these commands: bash, zsh or fish")
      ->type_name("SHELL")
      ->check([](const std::string& shell) {
        const bool isKnown = shell == "bash" || shell == "zsh" || shell == "fish";
        return isKnown ? std::string() : "the shells are bash, zsh and fish";
      });
}

}  // namespace authoring
