#include "authoring/CommandModel.h"

#include <algorithm>
#include <unordered_set>

#include "authoring/ShellWords.h"
#include "launchscript/FunctionArguments.h"
#include "launchscript/MacroHandler.h"

namespace authoring {
namespace {

constexpr const char* kStandIn = "x";

// Thrown when the rest of the template cannot be read.
struct Unreadable {};

std::string nameAt(const MacroText& text, std::size_t start, std::size_t end) {
  return std::string(text.buffer().bytes().view().substr(start + 1, end - start - 1));
}

// Replaces names by stand-ins and collects them, each once.
class NameReader : public MacroHandler {
 public:
  explicit NameReader(std::vector<std::string>& names) : m_names(names) {}

  CommandText processMacro(const MacroText& text, char /*delimiter*/, std::size_t start,
                           std::size_t& end) const override {
    std::string name = nameAt(text, start, end);
    if (m_seen.insert(name).second) {
      m_names.push_back(std::move(name));
    }
    return kStandIn;
  }

 private:
  std::vector<std::string>& m_names;
  mutable std::unordered_set<std::string> m_seen;
};

// Replaces the calls by what is known of their results, and collects them.
class CallReader : public MacroHandler {
 public:
  CallReader(std::vector<FunctionCall>& calls, std::string_view text)
      : m_calls(calls), m_hasPlainQuotes(hasPlainQuotes(text)) {}

  CommandText processMacro(const MacroText& text, char /*delimiter*/, std::size_t start,
                           std::size_t& end) const override {
    const FunctionGrammar* const function = findFunction(nameAt(text, start, end));
    CommandTexts arguments;
    FunctionArguments reader(text.buffer(), end + 1);
    if (function == nullptr || !reader.tryRead(arguments)) {
      throw Unreadable();
    }
    end = reader.position() - 1;
    m_calls.push_back(describe(function->function, arguments, text.buffer(), start, end));
    const CommandText result = resultOf(function->function, arguments);
    return result.empty() ? CommandText(kStandIn) : result;
  }

 private:
  // The text in front of `start` is final, so that its quotes are read once.
  FunctionCall describe(Function function, const CommandTexts& arguments, const CommandText& text,
                        std::size_t start, std::size_t end) const {
    const std::string_view bytes = text.bytes().view();
    FunctionCall call{.function = function, .arguments = {}};
    for (const CommandText& argument : arguments) {
      call.arguments.emplace_back(argument.bytes().view());
    }
    m_quotes.readTo(bytes, start);
    call.isInQuotes = m_quotes.areOpen() || !m_hasPlainQuotes;
    call.before = start > 0 ? bytes[start - 1] : '\0';
    call.behind = end + 1 < bytes.size() ? bytes[end + 1] : '\0';
    return call;
  }

  std::vector<FunctionCall>& m_calls;
  mutable ShellQuotes m_quotes;  // in front of the call
  const bool m_hasPlainQuotes;
};

CommandText argument(const CommandTexts& arguments, std::size_t index) {
  return index < arguments.size() ? arguments[index] : CommandText();
}

CommandText joined(const CommandTexts& arguments) {
  CommandText all;
  for (const CommandText& argument : arguments) {
    all += argument;
  }
  return all;
}

}  // namespace

long CommandModel::count(Function function) const {
  return static_cast<long>(
      std::count_if(calls.begin(), calls.end(),
                    [function](const FunctionCall& call) { return call.function == function; }));
}

CommandText resultOf(Function function, const CommandTexts& arguments) {
  switch (function) {
    case Function::kReplace:
      return argument(arguments, 2);
    case Function::kIfExists:
      return argument(arguments, 1);
    case Function::kSystemProp:
    case Function::kCP:
      return joined(arguments);
    default:
      return {};
  }
}

std::vector<std::string> namesIn(const SString& text, char mark) {
  std::vector<std::string> names;
  (void)NameReader(names).resolve(text, mark);
  return names;
}

namespace {

// The names in what REPLACE looks for and puts in do not stand in the text that it gives.
void readReplaced(CommandModel& model, const NameReader& reader) {
  for (const FunctionCall& call : model.calls) {
    if (call.function == Function::kReplace) {
      for (const std::string& argument : call.arguments) {
        (void)reader.resolve(SString(argument), kTagMark);
      }
    }
  }
}

}  // namespace

CommandModel readCommand(const SString& text) {
  CommandModel model;
  const NameReader tags(model.tags);
  try {
    const CommandText called = CallReader(model.calls, text.view()).resolve(text, kFunctionMark);
    const CommandText named = tags.resolve(called, kTagMark);
    const CommandText whole = NameReader(model.variables).resolve(named, kEnvironmentMark);
    model.text = std::string(whole.bytes().view());
  } catch (const Unreadable&) {
    model.isReadable = false;
  }
  readReplaced(model, tags);
  return model;
}

}  // namespace authoring
