#include "authoring/MainClass.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

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

constexpr std::string_view kEndsACommand = ";|&<>()\n";
constexpr std::string_view kFilledInLater = "@#$`*?";

// Behind them stands a word that is no class.
constexpr std::string_view kOptionsWithWord[] = {
    "--add-modules", "--add-opens", "--add-exports", "--add-reads", "--limit-modules",
};
// With them the class is elsewhere.
constexpr std::string_view kOptionsForOtherPlaces[] = {
    "-cp", "-classpath", "--class-path", "-jar", "-m", "--module", "-p", "--module-path",
};

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
    return SString(resultOf(function->function, args.empty()));
  }

 private:
  static std::string resultOf(Function function, bool withoutArguments) {
    switch (function) {
      case Function::kCP:
        return std::string(1, withoutArguments ? kJars : kUnknown);
      case Function::kRuntimeSystemProp:
      case Function::kRuntimeJavaArgs:
        return "";
      case Function::kSystemProp:
        return "-D";
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

// Splits one command off `text` as a shell would.
class Words {
 public:
  explicit Words(std::string_view text) : m_text(text) {}

  bool isAtEnd() const { return m_position >= m_text.size(); }

  std::vector<std::string> nextCommand() {
    std::vector<std::string> words;
    while (!isAtEnd() && !isIn(kEndsACommand)) {
      if (isIn(" \t")) {
        ++m_position;
      } else {
        words.push_back(nextWord());
      }
    }
    ++m_position;
    return words;
  }

 private:
  bool isIn(std::string_view set) const { return set.find(m_text[m_position]) != set.npos; }

  std::string nextWord() {
    std::string word;
    while (!isAtEnd() && !isIn(kEndsACommand) && !isIn(" \t")) {
      const char byte = m_text[m_position++];
      if (byte == '"' || byte == '\'') {
        const std::size_t end = std::min(m_text.find(byte, m_position), m_text.size());
        word += m_text.substr(m_position, end - m_position);
        m_position = end + 1;
      } else if (byte != '\\') {
        word += byte;
      }
    }
    return word;
  }

  std::string_view m_text;
  std::size_t m_position = 0;
};

bool isJava(std::string_view word) {
  const std::string_view name = word.substr(word.rfind('/') + 1);
  return word.find("@JVM_EXE@") != word.npos || name == "java";
}

bool isClassName(std::string_view word) {
  const auto isPart = [](unsigned char byte) {
    return std::isalnum(byte) != 0 || byte == '_' || byte == '$' || byte == '.' || byte == '/' ||
           byte >= 0x80;
  };
  return !word.empty() && std::isdigit(static_cast<unsigned char>(word[0])) == 0 &&
         std::all_of(word.begin(), word.end(), isPart);
}

template <class Options>
bool contains(const Options& options, std::string_view word) {
  return std::find(std::begin(options), std::end(options), word) != std::end(options);
}

// The class among the words behind Java's name.
std::optional<std::string> classAmong(const std::vector<std::string>& words, std::size_t i) {
  bool usesJars = false;
  for (; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (word == std::string(1, kJars)) {
      usesJars = true;
    } else if (contains(kOptionsWithWord, word)) {
      ++i;
    } else if (word.find(kUnknown) != word.npos || contains(kOptionsForOtherPlaces, word)) {
      return std::nullopt;
    } else if (!word.empty() && word[0] != '-') {
      const bool isKnown = usesJars && word.find_first_of(kFilledInLater) == word.npos;
      return isKnown && isClassName(word) ? std::optional(word) : std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> findMainClass(const SString& command) {
  SString text;
  try {
    text = FunctionResults().resolve(command, kFunctionMark).bytes();
  } catch (const LauncherException&) {
    return std::nullopt;
  }
  Words reader(text.view());
  while (!reader.isAtEnd()) {
    const std::vector<std::string> words = reader.nextCommand();
    const auto java = std::find_if(words.begin(), words.end(), isJava);
    if (java == words.end()) {
      continue;
    }
    std::optional<std::string> name =
        classAmong(words, static_cast<std::size_t>(java - words.begin()) + 1);
    if (name) {
      std::replace(name->begin(), name->end(), '/', '.');
    }
    return name;
  }
  return std::nullopt;
}

}  // namespace authoring
