#include "authoring/ArgumentCheck.h"

#include <algorithm>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "authoring/ShellWords.h"
#include "authoring/TextPatterns.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

// Of one template; more are no mistake of people.
constexpr std::size_t kMostCalls = 100;

bool isQuote(char byte) {
  return byte == '"' || byte == '\'';
}

bool beginsAWord(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '-';
}

class ArgumentCheck {
 public:
  ArgumentCheck(const Setup& setup, const SetupFile& script, Findings& findings)
      : m_script(script),
        m_isClasspathInCommand(isClasspathInCommand(setup)),
        m_hasJars(std::any_of(setup.files.begin(), setup.files.end(),
                              [](const SetupFile& file) { return file.type == FILE_TYPE_JAR; })),
        m_findings(findings) {}

  void run(const CommandModel& command) {
    for (std::size_t i = 0; i < std::min(command.calls.size(), kMostCalls); ++i) {
      checkCall(command.calls[i]);
    }
    m_tag = tagname::kArchive;
    if (m_isClasspathInCommand) {
      checkEntry(std::string(m_script.tagFile->getTagValue(m_tag, 0).view()));
    }
  }

 private:
  void error(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.error(m_script.at(m_tag, 0), std::string(m_tag) + ": " + what, why, advice);
  }
  void warn(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.warning(m_script.at(m_tag, 0), std::string(m_tag) + ": " + what, why, advice);
  }

  void checkCall(const FunctionCall& call) {
    switch (call.function) {
      case Function::kCP:
        if (m_isClasspathInCommand) {
          checkEntries(call);
          checkPattern(call);
          checkNeighbours(call, "CP");
        }
        return;
      case Function::kRuntimeSystemProp:
        return checkNeighbours(call, "RUNTIME_SYSTEMPROP");
      case Function::kRuntimeJavaArgs:
        return checkNeighbours(call, "RUNTIME_JAVAARGS");
      case Function::kSystemProp:
        return checkProperty(call);
      case Function::kReplace:
        return checkReplace(call);
      default:
        return;
    }
  }

  // --- CP ---

  void checkEntries(const FunctionCall& call) {
    for (const std::string& entry : call.arguments) {
      if (!call.isInQuotes) {
        checkEntry(entry);
      }
      checkList(entry);
    }
  }

  void checkEntry(const std::string& entry) {
    if (const auto fault = findShellFault(entry)) {
      const bool isArchive = m_tag == std::string_view(tagname::kArchive);
      error("the entry " + quotedText(entry) + " " + fault->what, fault->why,
            std::string("put the entry into double quotes, doubled as in ") +
                (isArchive ? "ARCHIVE: \"\"\"my lib.jar\"\"\""
                           : "%CP%(\"\"\"my lib.jar\"\"\"), and separate entries by commas"));
    }
  }

  // What the user's options -cp:p and -cp:a know, and what other lists look like.
  void checkList(const std::string& entry) {
    const bool namesAFile = entry.starts_with(kTagMark) && entry.find(kTagMark, 1) == entry.npos;
    if (namesAFile) {
      warn("the entry " + quotedText(entry) + " names no list",
           "a file with entries is for -cp:p and -cp:a", "write the entries themselves");
    } else if (entry.find(".jar,") != std::string::npos) {
      error("the entry " + quotedText(entry) + " is a list with commas",
            "Java takes it for the name of one file", "write %CP%(\"a.jar\",\"b.jar\")");
    }
  }

  // A pattern such as lib/* is for Java, but alone the shell expands it to several words.
  void checkPattern(const FunctionCall& call) {
    const bool isAlone = call.arguments.size() == 1 && !m_hasJars && !call.isInQuotes;
    const std::string entry = isAlone ? call.arguments[0] : "";
    if (entry.ends_with('*') && entry.find('"') == std::string::npos) {
      warn("the shell expands the pattern " + quotedText(entry),
           "with several files Java takes the second one for the class",
           "put the entry into double quotes: %CP%(\"\"\"" + entry + "\"\"\")");
    }
  }

  // "...@JVM_EXE@"%CP%()com.example.Setup
  void checkNeighbours(const FunctionCall& call, const std::string& name) {
    const bool isCP = call.function == Function::kCP;
    const std::string why = "the shell makes one word of both";
    if (!call.isInQuotes && isQuote(call.before)) {
      report(isCP, "no blank stands in front of " + name, why, "write a blank there");
    }
    if (!call.isInQuotes && beginsAWord(call.behind)) {
      report(isCP, "no blank stands behind " + name, why, "write a blank there");
    }
  }

  // What a side file gives is rarely there.
  void report(bool isAlwaysThere, const std::string& what, const std::string& why,
              const std::string& advice) {
    isAlwaysThere ? error(what, why, advice) : warn(what, why, advice);
  }

  // --- Other functions ---

  void checkProperty(const FunctionCall& call) {
    if (call.arguments.size() != 2 || call.isInQuotes) {
      return;
    }
    const std::string& name = call.arguments[0];
    const std::string& value = call.arguments[1];
    if (withoutBlanks(name).empty() || name.find_first_of("= \t") != std::string::npos) {
      error("SYSTEMPROP: " + quotedText(name) + " is no name of a property",
            "the wizard does not find the property", "write %SYSTEMPROP%(\"name\",\"value\")");
    } else if (const auto fault = findShellFault(value)) {
      error("SYSTEMPROP: the value " + quotedText(value) + " " + fault->what, fault->why,
            "put the value into double quotes, doubled as in %SYSTEMPROP%(\"name\",\"\"\"a "
            "b\"\"\")");
    }
  }

  static bool holdsMacro(const std::string& text) {
    return text.find_first_of({kFunctionMark, kTagMark}) != std::string::npos;
  }

  void checkReplace(const FunctionCall& call) {
    if (call.arguments.size() != 3) {
      return;
    }
    const std::string& from = call.arguments[0];
    const std::string& subject = call.arguments[2];
    if (from.empty()) {
      warn("REPLACE looks for nothing", "it replaces nothing",
           "write the text that is to be replaced first");
    } else if (from.find(kTagMark) == std::string::npos && holdsMacro(subject) &&
               subject.find(from) == std::string::npos) {
      warn("REPLACE: " + quotedText(from) + " does not stand in " + quotedText(subject),
           "the subject is taken as it is written, in front of all macros, and nothing is replaced",
           "let the shell do it, or leave it out");
    }
  }

  const SetupFile& m_script;
  const bool m_isClasspathInCommand;
  const bool m_hasJars;
  Findings& m_findings;
  const char* m_tag = tagname::kCommand;
};

}  // namespace

std::optional<ShellFault> findShellFault(std::string_view text) {
  const CommandModel model = readCommand(SString(withoutBlanks(text)));
  const char end = model.isReadable ? findWordEnd(model.text) : '\0';
  if (end == '\0') {
    return std::nullopt;
  }
  if (isWhitespace(end)) {
    return ShellFault{"holds a blank outside quotes", "the shell makes several words of it"};
  }
  return ShellFault{std::string("holds ") + end + " outside quotes",
                    "the shell takes it for a sign of its own"};
}

bool isClasspathInCommand(const Setup& setup) {
  return std::any_of(setup.files.begin(), setup.files.end(), [](const SetupFile& file) {
    return file.type == FILE_TYPE_JVM && file.tagFile != nullptr &&
           isJavaPath(file.tagFile->getTagValue(tagname::kJVMExe, 0).view()) &&
           file.tagFile->getTagValue(tagname::kUseCPEnvVar, 0) != "1" &&
           file.tagFile->getTagValue(tagname::kClasspath, 0).find('-') != SString::npos;
  });
}

void checkArguments(const Setup& setup, const SetupFile& script, const CommandModel& command,
                    Findings& findings) {
  if (command.isReadable) {
    ArgumentCheck(setup, script, findings).run(command);
  }
}

}  // namespace authoring
