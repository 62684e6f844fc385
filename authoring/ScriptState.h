// ScriptState: what is known of a script's variables at a line, without running the script.
#ifndef CORVANE_AUTHORING_SCRIPTSTATE_H
#define CORVANE_AUTHORING_SCRIPTSTATE_H

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "launcher/ScriptVariables.h"
#include "util/SString.h"

namespace authoring {

// What a string variable holds.
struct KnownText {
  enum Kind { kText, kHome, kJVMFile, kUnknown };
  Kind kind = kText;
  std::string text = {};  // of kText
  long setBy = -1;        // the line, from 0; -1: none, it is empty from the beginning
};

struct ScriptState {
  long line = 0;  // the next one, from 0
  // The line of a search that has found nothing and said nothing, as long as nothing was done
  // about it; -1: none.
  long silentSearch = -1;
  std::array<std::optional<std::int32_t>, kNumericVariables> numbers;  // nothing: unknown
  std::array<bool, kNumericVariables> isSet{};                         // of the numbers
  std::array<KnownText, kStringVariables> texts;

  ScriptState() { numbers.fill(0); }

  void setNumber(std::int32_t n, std::optional<std::int32_t> value);
  KnownText& text(std::int32_t n) { return texts[static_cast<std::size_t>(n - 1)]; }
  const KnownText& text(std::int32_t n) const { return texts[static_cast<std::size_t>(n - 1)]; }

  // The text with its references replaced; nothing where that is known at run time only, or long.
  std::optional<std::string> evaluate(const SString& text) const;
  // What a whole argument stands for: of a single reference to a string variable what that holds.
  KnownText argument(const SString& written) const;
  // SET; a name that is no variable changes nothing.
  void assign(const SString& name, const KnownText& value);

  // Which numeric variable the whole text is a reference to; 0 for none.
  static std::int32_t numberIn(const SString& text);

  // Equal states have equal keys.
  std::string key() const;
};

}  // namespace authoring

#endif
