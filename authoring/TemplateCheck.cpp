#include "authoring/TemplateCheck.h"

#include <algorithm>
#include <cctype>

#include "authoring/FileTypes.h"
#include "authoring/NearestName.h"
#include "launchscript/FunctionArguments.h"
#include "launchscript/LaunchScriptGrammar.h"
#include "launchscript/MacroHandler.h"

namespace authoring {
namespace {

// Thrown when the rest of the template cannot be parsed.
struct Unparsable {};

bool looksLikeAFunction(std::string_view name) {
  return std::all_of(name.begin(), name.end(),
                     [](unsigned char byte) { return std::isalnum(byte) != 0 || byte == '_'; });
}

std::string describeCount(long count) {
  return std::to_string(count) + (count == 1 ? " argument" : " arguments");
}

std::string wantedCount(const FunctionGrammar& function) {
  if (function.mostArguments == 0) {
    return " takes no arguments";
  }
  const bool isFixed = function.leastArguments == function.mostArguments;
  return (isFixed ? " needs " : " takes at most ") + describeCount(function.mostArguments);
}

// Empty when the author has forgotten it.
CommandText argument(const CommandTexts& args, std::size_t index) {
  return index < args.size() ? args[index] : CommandText();
}

// The arguments that a call puts into the command, where they are scanned again.
CommandText resultOf(Function function, const CommandTexts& args) {
  switch (function) {
    case Function::kReplace:
      return argument(args, 2);
    case Function::kSystemProp:
      return argument(args, 0) + argument(args, 1);
    case Function::kIfExists:
      return argument(args, 1);
    case Function::kCP: {
      CommandText entries;
      for (const CommandText& entry : args) {
        entries += entry;
      }
      return entries;
    }
    default:
      return {};
  }
}

class TemplateCheck : public MacroHandler {
 public:
  TemplateCheck(const SetupFile& file, const char* tag, Findings& findings)
      : m_file(file), m_tag(tag), m_findings(findings) {}

  CommandText processMacro(const MacroText& text, char /*delimiter*/, std::size_t start,
                           std::size_t& end) const override {
    const SString name = text.buffer().bytes().substr(start + 1, end - start - 1);
    const FunctionGrammar* const function = findFunction(name);
    if (function == nullptr) {
      reportUnknown(name.view());
      return {};
    }
    CommandTexts args;
    FunctionArguments reader(text.buffer(), end + 1);
    if (!reader.tryRead(args)) {
      report(std::string(function->name) + " has no list of arguments that ends",
             "write parentheses, and in them texts in double quotes with commas between");
      throw Unparsable();
    }
    end = reader.position() - 1;
    checkCount(*function, static_cast<long>(args.size()));
    return resultOf(function->function, args);
  }

 private:
  void report(const std::string& what, const std::string& advice) const {
    m_findings.error(m_file.at(m_tag, 0), std::string(m_tag) + ": " + what,
                     "the wizard is not started", advice);
  }

  void reportUnknown(std::string_view name) const {
    report("there is no function " + quotedText(name), didYouMean(name, kFunctionGrammar));
    if (!looksLikeAFunction(name)) {
      throw Unparsable();
    }
  }

  void checkCount(const FunctionGrammar& function, long count) const {
    if (count < function.leastArguments || count > function.mostArguments) {
      report(function.name + wantedCount(function) + " and has " + std::to_string(count), "");
    }
  }

  const SetupFile& m_file;
  const char* m_tag;
  Findings& m_findings;
};

}  // namespace

void checkTemplate(const SetupFile& file, const char* tag, Findings& findings) {
  try {
    const SString text = file.tagFile->getTagValue(tag, 0);
    TemplateCheck(file, tag, findings).resolve(text, kFunctionMark);
  } catch (const Unparsable&) {
  }
}

}  // namespace authoring
