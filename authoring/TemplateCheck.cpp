#include "authoring/TemplateCheck.h"

#include <algorithm>
#include <cctype>

#include "authoring/CommandModel.h"
#include "authoring/FileTypes.h"
#include "authoring/NearestName.h"
#include "launchscript/FunctionArguments.h"
#include "launchscript/LaunchScriptGrammar.h"
#include "launchscript/MacroHandler.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

constexpr const char* kOwnSign =
    "put a percent sign of your own behind all calls, or into a tag of the jvm file";

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

// What is missing where the launcher expected something else.
std::string describeBreak(const CommandText& text, std::size_t position) {
  FunctionArguments reader(text, position);
  CommandTexts arguments;
  try {
    if (reader.read(arguments)) {
      return "";
    }
  } catch (const LauncherException&) {
    return " has an argument without its closing quote";
  }
  const SString error = reader.errorText();
  if (error.startsWith("Expected left")) {
    return " lacks its (";
  }
  return error.startsWith("Expected right")
             ? " lacks its )"
             : " has an argument without double quotes, or lacks its )";
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
      report(function->name + describeBreak(text.buffer(), end + 1),
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
    // "%CP() ... %": the name goes on to the next sign
    const std::string_view front = name.substr(0, name.find('('));
    if (front != name && findFunction(front) != nullptr) {
      const std::string function(front);
      report(function + " lacks its second percent sign", "write %" + function + "%(");
    } else {
      report("there is no function " + quotedText(name),
             looksLikeAFunction(name) ? didYouMean(name, kFunctionGrammar) : kOwnSign);
    }
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
