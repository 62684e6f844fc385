#include "authoring/JavaCall.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "authoring/JavaClass.h"
#include "authoring/JavaOptions.h"
#include "authoring/ShellWords.h"
#include "authoring/TextPatterns.h"
#include "launchscript/FunctionArguments.h"
#include "launchscript/LaunchScriptGrammar.h"
#include "launchscript/MacroHandler.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

// What functions give, as far as it matters here.
constexpr char kJars = '\x01';     // the class path of the setup's jars
constexpr char kUnknown = '\x02';  // anything
constexpr std::string_view kPath = "/";

constexpr std::string_view kFilledInLater = "@#$`*?";

// They run the program behind them; the last ones are words of the shell.
constexpr std::string_view kRunners[] = {"exec", "command", "nohup", "env", "then",
                                         "else", "do",      "{",     "!"};

class FunctionResults : public MacroHandler {
 public:
  CommandText processMacro(const MacroText& text, char /*delimiter*/, std::size_t start,
                           std::size_t& end) const override {
    const SString name = text.buffer().bytes().substr(start + 1, end - start - 1);
    const FunctionGrammar* const function = findFunction(name);
    CommandTexts args;
    FunctionArguments reader(text.buffer(), end + 1);
    if (function == nullptr || !reader.tryRead(args)) {
      throw LauncherException("not callable");
    }
    end = reader.position() - 1;
    return SString(resultOf(function->function, args));
  }

 private:
  static std::string resultOf(Function function, const CommandTexts& args) {
    switch (function) {
      case Function::kCP:
        return std::string(1, args.empty() ? kJars : kUnknown);
      case Function::kIfExists:
        // An @ in front of @TAG@ only takes the tag's value off (docs/jvm-file.md, "Ask quickly").
        return args.size() == 2 && args[1].bytes() == "@" ? "" : std::string(1, kUnknown);
      case Function::kRuntimeSystemProp:
      case Function::kRuntimeJavaArgs:
        return "";
      case Function::kSystemProp:
        return "-Dname=value";
      case Function::kLauncherFile:
      case Function::kLauncherDir:
      case Function::kTempDir:
      case Function::kApplicationArchive:
        return std::string(kPath);
      default:
        return std::string(1, kUnknown);
    }
  }
};

bool isJava(std::string_view word) {
  return word.find("@JVM_EXE@") != word.npos || isJavaPath(word);
}

// exec, also behind a macro that may give more: "@NO_JAVA@exec".
bool isRunner(std::string_view word) {
  const std::string_view name = word.substr(word.find_last_of("@\x02") + 1);
  return std::find(std::begin(kRunners), std::end(kRunners), name) != std::end(kRunners);
}

// Reads the words behind Java's name.
class CallReader {
 public:
  explicit CallReader(JavaCall& call) : m_call(call) {}

  void read(const std::vector<std::string>& words, std::size_t first) {
    for (std::size_t i = first; i < words.size() && m_call.isReadable && m_call.needsClass; ++i) {
      const bool isOption = m_call.className.empty() && words[i].starts_with('-');
      if (words[i] == std::string(1, kJars)) {
        (m_call.className.empty() ? m_call.hasJars : m_call.hasJarsBehindClass) = true;
      } else if (isOption) {
        i += readOption(words[i]);
      } else if (isForTheMachine(words[i])) {
        m_call.optionBehindClass = words[i];
      } else if (m_call.className.empty() && !words[i].empty()) {
        readClass(words[i]);
      }
    }
  }

 private:
  // Returns how many more words belong to it.
  std::size_t readOption(const std::string& word) {
    const bool isClasspath = isClasspathOption(word);
    if (word.find(kUnknown) != word.npos || word.find(kJars) != word.npos) {
      m_call.isReadable = false;
    } else if (needsItsValue(word)) {
      m_call.optionApart = word;
    } else if (hasBadSize(word)) {
      if (m_call.optionWithBadSize.empty()) {
        m_call.optionWithBadSize = word;
      }
    } else if (isClasspath || word.starts_with("--class-path=")) {
      m_call.hasOwnClasspath = true;
    } else if (startsAJarOrModule(word) || startsNothing(word)) {
      m_call.needsClass = false;
    }
    return isClasspath || takesAWord(word) ? 1 : 0;
  }

  void readClass(const std::string& word) {
    m_call.isReadable =
        word.find_first_of(kFilledInLater) == word.npos && word.find(kUnknown) == word.npos;
    m_call.className = word;
  }

  JavaCall& m_call;
};

std::optional<JavaCall> readCall(const ShellCommand& command) {
  const auto java = std::find_if(command.words.begin(), command.words.end(), isJava);
  if (java == command.words.end()) {
    return std::nullopt;
  }
  JavaCall call;
  call.isLast = command.isLast;
  call.needsClass = java + 1 != command.words.end();
  call.isCertain =
      !isAssignment(*java) && std::all_of(command.words.begin(), java, [](const std::string& word) {
        return isRunner(word) || isAssignment(word);
      });
  CallReader(call).read(command.words, static_cast<std::size_t>(java - command.words.begin()) + 1);
  return call;
}

}  // namespace

std::optional<JavaCall> findJavaCall(const SString& command) {
  SString text;
  try {
    text = FunctionResults().resolve(command, kFunctionMark).bytes();
  } catch (const LauncherException&) {
    return std::nullopt;
  }
  if (!hasClosedQuotes(text.view())) {
    return std::nullopt;
  }
  std::optional<JavaCall> found;
  for (const ShellCommand& part : readShellCommands(text.view())) {
    const std::optional<JavaCall> call = readCall(part);
    if (call && (!found || call->isCertain)) {
      found = call;
    }
  }
  return found;
}

std::optional<std::string> findMainClass(const SString& command) {
  const std::optional<JavaCall> call = findJavaCall(command);
  if (!call || !call->isReadable || !call->needsClass || !call->hasJars || call->hasOwnClasspath) {
    return std::nullopt;
  }
  // Java takes com/example/Setup, too.
  std::string name = call->className;
  std::replace(name.begin(), name.end(), '/', '.');
  return isClassName(name) ? std::optional(name) : std::nullopt;
}

}  // namespace authoring
