#include "authoring/MacroNames.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "archive/LauncherFileFormat.h"
#include "authoring/CommandModel.h"
#include "authoring/FileTypes.h"
#include "authoring/NearestName.h"
#include "authoring/TextPatterns.h"
#include "launchscript/LaunchScriptGrammar.h"
#include "tagfile/TagNames.h"
#include "tagfile/TagTables.h"

namespace authoring {
namespace {

// Of one template; more are no mistake of people.
constexpr std::size_t kMostNames = 100;

// The variables that users have, for misspelt ones.
constexpr std::string_view kUsualVariables[] = {
    "HOME",     "USER",   "LOGNAME", "PATH",      "SHELL",  "LANG",          "TERM",
    "DISPLAY",  "TMPDIR", "PWD",     "JAVA_HOME", "EDITOR", "XDG_DATA_HOME", "XDG_CONFIG_HOME",
    "HOSTNAME", "LC_ALL", "TEMP",
};

// Letters, digits, "_", "-" and ".": what anybody would call a tag.
bool couldBeATag(std::string_view name) {
  const auto fits = [](unsigned char byte) {
    return std::isalnum(byte) != 0 || byte == '_' || byte == '-' || byte == '.';
  };
  return !name.empty() && std::all_of(name.begin(), name.end(), fits);
}

std::string marked(std::string_view name, char mark) {
  return mark + std::string(name) + mark;
}

class MacroNames {
 public:
  MacroNames(const Setup& setup, const SetupFile& script, const char* tag, Findings& findings)
      : m_script(script), m_tag(tag), m_findings(findings) {
    for (const TagRow& row : kJVMFileTags) {
      m_known.emplace_back(row.name);
    }
    for (const SetupFile& file : setup.files) {
      if (file.type == FILE_TYPE_JVM) {
        m_hasJVMFiles = true;
        addTags(file);
      }
    }
  }

  void run() {
    const CommandModel command = readCommand(m_script.tagFile->getTagValue(m_tag, 0));
    for (std::size_t i = 0; i < std::min(command.tags.size(), kMostNames); ++i) {
      checkTag(command.tags[i]);
    }
    for (std::size_t i = 0; i < std::min(command.variables.size(), kMostNames); ++i) {
      checkVariable(command.variables[i]);
    }
    for (const FunctionCall& call : command.calls) {
      if (call.function == Function::kIfExists && !call.arguments.empty()) {
        checkAsked(call.arguments[0]);
      }
    }
  }

 private:
  // A file that does not parse may set anything.
  void addTags(const SetupFile& file) {
    m_areAllRead = m_areAllRead && file.tagFile != nullptr;
    for (const TagSource& tag : file.sources.tags()) {
      m_known.push_back(tag.name);
    }
  }

  void error(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.error(m_script.at(m_tag, 0), std::string(m_tag) + ": " + what, why, advice);
  }
  void warn(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.warning(m_script.at(m_tag, 0), std::string(m_tag) + ": " + what, why, advice);
  }

  bool isKnown(std::string_view name) const {
    return std::find(m_known.begin(), m_known.end(), name) != m_known.end();
  }

  std::string hintFor(std::string_view name) const {
    const std::vector<std::string_view> names(m_known.begin(), m_known.end());
    const std::string_view near = nearestName(name, names);
    return near.empty() ? "" : "did you mean " + std::string(near) + "?";
  }

  void checkTag(const std::string& name) {
    if (isKnown(name)) {
      return;
    }
    const std::string mark = marked(name, kTagMark);
    if (!couldBeATag(name)) {
      error("the text between two @ is taken for the name of a tag: " + quotedText(name),
            "it vanishes from the command",
            "leave a single @ in the command, or put the text into a tag and name that");
    } else if (findFunction(name) != nullptr) {
      error(mark + " is a function and no tag", "it vanishes from the command",
            "write " + marked(name, kFunctionMark) + "()");
    } else if (const std::string hint = hintFor(name); !hint.empty()) {
      error("no jvm file sets " + mark, "it vanishes from the command", hint);
    } else if (m_hasJVMFiles && m_areAllRead) {
      warn("no jvm file sets " + mark, "it vanishes from the command",
           "set the tag " + name + " in the jvm files, or leave it out");
    }
  }

  void checkAsked(const std::string& name) {
    if (!isKnown(name) && m_hasJVMFiles && m_areAllRead) {
      const std::string hint = hintFor(name);
      warn("no jvm file sets the tag " + quotedText(name) + " that IF_EXISTS asks for",
           "its text is never put in",
           hint.empty() ? "set the tag in a jvm file, or leave out the call" : hint);
    }
  }

  void checkVariable(const std::string& name) {
    const std::string mark = marked(name, kEnvironmentMark);
    const auto* const begin = std::begin(kUsualVariables);
    const auto* const end = std::end(kUsualVariables);
    if (!isVariableName(name)) {
      error("the text between two # is taken for the name of a variable: " + quotedText(name),
            "it vanishes from the command",
            "leave a single # in the command, or put the text into the environment");
    } else if (isTagAndNoVariable(name)) {
      warn(mark + " is a tag of the jvm file and no variable of users",
           "it vanishes from the command", "write " + marked(name, kTagMark));
    } else if (findFunction(name) != nullptr) {
      warn(mark + " is a function and no variable of users", "it vanishes from the command",
           "write " + marked(name, kFunctionMark) + "()");
    } else if (std::find(begin, end, name) == end) {
      checkSpelling(name, nearestName(name, {begin, end}));
    }
  }

  // Users and JVMs know a variable CLASSPATH.
  bool isTagAndNoVariable(const std::string& name) const {
    return name != tagname::kClasspath && isKnown(name);
  }

  void checkSpelling(const std::string& name, std::string_view near) {
    if (!near.empty() && name.size() >= near.size() - 1 && near.size() > 3) {
      warn("hardly anybody sets " + marked(name, kEnvironmentMark), "it vanishes from the command",
           "did you mean " + std::string(near) + "?");
    }
  }

  const SetupFile& m_script;
  const char* m_tag;
  Findings& m_findings;
  std::vector<std::string> m_known;  // the tags of the launcher and of the jvm files
  bool m_hasJVMFiles = false;
  bool m_areAllRead = true;
};

}  // namespace

void checkMacroNames(const Setup& setup, const SetupFile& script, const char* tag,
                     Findings& findings) {
  MacroNames(setup, script, tag, findings).run();
}

}  // namespace authoring
