#include "authoring/RequiredArguments.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/FileTypes.h"
#include "authoring/JavaOptions.h"
#include "authoring/ShellWords.h"
#include "authoring/TextPatterns.h"
#include "tagfile/TagNames.h"

namespace authoring {
namespace {

constexpr const char* kNoJava = "no Java is accepted";
// What words may begin with that are filled in later, or are no words of Java's at all.
constexpr std::string_view kFilledInLater = "@#$`*?%";

class RequiredArguments {
 public:
  RequiredArguments(const SetupFile& file, const CommandModel& command, Findings& findings)
      : m_file(file), m_command(command), m_findings(findings) {}

  void run() {
    const SString text = m_file.tagFile->getTagValue(tagname::kReqJavaArgs, 0);
    if (text.empty()) {
      return;
    }
    if (!hasClosedQuotes(text.view())) {
      error("a quote is not closed",
            "the shell refuses each command for this Java, and none is accepted",
            "close the quote");
    } else if (!hasFunctions(text)) {
      checkShell(std::string(text.view()));
    }
    checkUse();
  }

 private:
  void error(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.error(m_file.at(tagname::kReqJavaArgs, 0),
                     std::string(tagname::kReqJavaArgs) + ": " + what, why, advice);
  }

  void checkShell(const std::string& text) {
    const std::vector<ShellCommand> commands = readShellCommands(text);
    if (commands.empty()) {
      return;
    }
    const std::string why = "the class stands behind it in the command, and ";
    if (!commands[0].isLast || commands.size() > 1) {
      error("a sign such as ; or & ends the command", why + kNoJava,
            "put the argument into double quotes");
    } else if (hasShellComment(text)) {
      error("# begins a comment of the shell", why + kNoJava, "leave it out");
    } else if (isJavaPath(m_file.tagFile->getTagValue(tagname::kJVMExe, 0).view())) {
      checkWords(commands[0].words);
    }
  }

  // One fault is enough. Other programs than Java's have options of their own.
  void checkWords(const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
      const std::string& word = words[i];
      if (word.empty() || kFilledInLater.find(word[0]) != std::string_view::npos) {
        return;  // it may be anything, and so may the words behind it
      }
      if (word[0] != '-') {
        return error(quotedText(word) + " is no option",
                     std::string("Java takes it for the class, and ") + kNoJava,
                     "write options alone, such as -Xmx512m");
      }
      if (isClasspathOption(word) || word.starts_with("--class-path=")) {
        return error(word + " takes the place of the class path",
                     std::string("Java does not find the class that it is to run, and ") + kNoJava,
                     "write the entries as JVM_CLASSPATH");
      }
      if (hasBadSize(word)) {
        return error(word + " is no size that Java knows",
                     std::string("Java refuses to start, and ") + kNoJava,
                     "write a number and k, m or g, such as -Xmx512m");
      }
      if (startsAJarOrModule(word) || startsNothing(word)) {
        return error("with " + word + " Java runs no class", kNoJava, "leave it out");
      }
      i += takesAWord(word) ? 1U : 0U;
    }
  }

  // Functions are for COMMAND; tells of those that are here.
  bool hasFunctions(const SString& text) {
    bool isFound = false;
    for (const std::string& name : namesIn(text, kFunctionMark)) {
      if (findFunction(name) != nullptr) {
        error("the function " + name + " is not called here",
              std::string("a search puts the value into its command as it stands, and ") + kNoJava,
              "write it into COMMAND");
        isFound = true;
      }
    }
    return isFound;
  }

  void checkUse() {
    if (m_command.isReadable && !isNamedInCommand() && !m_command.text.empty()) {
      m_findings.warning(m_file.at(tagname::kReqJavaArgs, 0),
                         std::string(tagname::kReqJavaArgs) + " is not part of COMMAND",
                         "the arguments count for a search, but not for the wizard",
                         "write %RUNTIME_JAVAARGS%() or @REQ_JAVA_ARGS@ into COMMAND");
    }
  }

  // By a tag of the author's own, too.
  bool isNamedInCommand() const {
    std::vector<std::string> pending = m_command.tags;
    std::set<std::string> named;
    while (!pending.empty()) {
      const std::string name = pending.back();
      pending.pop_back();
      if (named.insert(name).second) {
        const auto names = namesIn(m_file.tagFile->getTagValue(name.c_str(), 0), kTagMark);
        pending.insert(pending.end(), names.begin(), names.end());
      }
    }
    return m_command.count(Function::kRuntimeJavaArgs) > 0 ||
           named.count(tagname::kReqJavaArgs) != 0;
  }

  const SetupFile& m_file;
  const CommandModel& m_command;
  Findings& m_findings;
};

}  // namespace

void checkRequiredArguments(const SetupFile& file, const CommandModel& command,
                            Findings& findings) {
  RequiredArguments(file, command, findings).run();
}

}  // namespace authoring
