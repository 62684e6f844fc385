#include "authoring/ScriptReferences.h"

#include "authoring/FileTypes.h"
#include "authoring/TextPatterns.h"
#include "instructions/ScriptSyntax.h"
#include "instructions/VariableRef.h"
#include "launcher/ScriptVariables.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

constexpr const char* kAnyValue = "0";  // for one that is known at run time only

}  // namespace

Fault findVariableFault(const SString& name) {
  try {
    VariableRef().init(name, "");
    return {};
  } catch (const LauncherException&) {
    return {quotedText(name) + " is no variable",
            "write N1 to N" + std::to_string(kNumericVariables) + " or S1 to S" +
                std::to_string(kStringVariables)};
  }
}

Fault findReferenceFault(const SString& text) {
  bool hasVariable = false;
  bool hasDoubled = false;
  std::string replaced;
  std::size_t end = 0;
  for (Reference reference = findReference(text, 0); reference.kind != Reference::kNone;
       reference = findReference(text, end)) {
    if (reference.kind == Reference::kUnclosed) {
      return {"the last @ lacks its second one", "write a single @ as @@"};
    }
    const bool isVariable = reference.kind == Reference::kVariable;
    const Fault fault = isVariable ? findVariableFault(reference.name(text)) : Fault();
    if (!fault.what.empty()) {
      return fault;
    }
    (isVariable ? hasVariable : hasDoubled) = true;
    replaced += text.view().substr(end, reference.begin - end);
    replaced += isVariable ? kAnyValue : "@";
    end = reference.end + 1;
  }
  if (!hasVariable || !hasDoubled) {
    return {};
  }
  // The interpreter reads the text again once it has replaced a variable.
  replaced += text.view().substr(end);
  const bool isWhole = findReferenceFault(SString(std::string_view(replaced))).what.empty();
  return isWhole ? Fault()
                 : Fault{
                       "the @@ is read again, since a variable stands beside it, and then its @ "
                       "begins a reference",
                       "write @@@@ for a single @ there"};
}

bool isBareVariable(std::string_view text) {
  return text.size() > 1 && isDigits(text.substr(1)) &&
         findVariableFault(SString(text)).what.empty();
}

}  // namespace authoring
