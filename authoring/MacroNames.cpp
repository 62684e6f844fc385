#include "authoring/MacroNames.h"

#include <algorithm>
#include <cctype>
#include <set>
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
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

// Of one template; more are no mistake of people.
constexpr std::size_t kMostNames = 100;

// The variables that users have.
constexpr std::string_view kUsualVariables[] = {
    "HOME",
    "USER",
    "LOGNAME",
    "PATH",
    "SHELL",
    "LANG",
    "LANGUAGE",
    "TERM",
    "DISPLAY",
    "TMPDIR",
    "TEMP",
    "TMP",
    "PWD",
    "OLDPWD",
    "HOSTNAME",
    "HOST",
    "EDITOR",
    "VISUAL",
    "BROWSER",
    "MAIL",
    "TZ",
    "UID",
    "EUID",
    "SUDO_USER",
    "SUDO_UID",
    "NO_COLOR",
    "COLORTERM",
    "LD_LIBRARY_PATH",
    "DYLD_LIBRARY_PATH",
    "WAYLAND_DISPLAY",
    "DESKTOP_SESSION",
};
// What the names of others begin with.
constexpr std::string_view kUsualBeginnings[] = {
    "JAVA", "JDK", "JRE", "_JAVA", "LC_", "XDG_", "SSH_", "DBUS_", "http", "HTTP", "no_proxy"};

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
    if (file.tagFile != nullptr) {
      addVariables(*file.tagFile);
    }
  }

  void addVariables(const TagFile& tags) {
    m_set.emplace(tags.getTagValue(tagname::kCPEnvVar, 0).view());
    for (long i = 0; i < tags.getTagValueCount(tagname::kSetEnvForWizard); ++i) {
      const SString line =
          tags.getTagValue(tagname::kSetEnvForWizard, static_cast<unsigned long>(i));
      m_set.emplace(withoutBlanks(line.view().substr(0, line.find('='))));
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
    } else if (!isUsual(name) && m_set.count(name) == 0) {
      const std::string_view near =
          nearestName(name, {std::begin(kUsualVariables), std::end(kUsualVariables)});
      warn("hardly anybody sets " + mark, "it vanishes from the command then",
           near.size() > 3 ? "did you mean " + std::string(near) + "?"
                           : "leave it out, or set a tag of the jvm file and name that");
    }
  }

  // Users and JVMs know a variable CLASSPATH.
  bool isTagAndNoVariable(const std::string& name) const {
    return name != tagname::kClasspath && isKnown(name);
  }

  static bool isUsual(std::string_view name) {
    const auto begins = [name](std::string_view text) { return name.starts_with(text); };
    return name == tagname::kClasspath ||
           std::find(std::begin(kUsualVariables), std::end(kUsualVariables), name) !=
               std::end(kUsualVariables) ||
           std::any_of(std::begin(kUsualBeginnings), std::end(kUsualBeginnings), begins);
  }

  const SetupFile& m_script;
  const char* m_tag;
  Findings& m_findings;
  std::vector<std::string> m_known;  // the tags of the launcher and of the jvm files
  std::set<std::string> m_set;       // the variables that the jvm files set
  bool m_hasJVMFiles = false;
  bool m_areAllRead = true;
};

}  // namespace

void checkMacroNames(const Setup& setup, const SetupFile& script, const char* tag,
                     Findings& findings) {
  MacroNames(setup, script, tag, findings).run();
}

}  // namespace authoring
