// Templates of launch scripts. Any text resolves or fails with a LauncherException; the text that
// was put aside as finished changes nothing, not even a position in an error.
#include <algorithm>
#include <string>

#include "fuzz/Fuzzing.h"
#include "jvm/JVMFile.h"
#include "launchscript/LaunchScript.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

constexpr std::size_t kLongestText = 512;
constexpr int kMostMacros = 100;  // from there on canceled: values may name themselves

enum class Given { Rest, WholeText };

// Hands each macro on, with the rest of the text or as if nothing had been put aside yet.
class Script : public LaunchScript {
 public:
  Script(const SString& command, Given given) : LaunchScript(command, false), m_given(given) {}

  CommandText processMacro(const MacroText& text, char delimiter, std::size_t start,
                           std::size_t& end) const override {
    PlatformTestAccess::setCanceled(++m_calls > kMostMacros);
    if (m_given == Given::Rest) {
      return LaunchScript::processMacro(text, delimiter, start, end);
    }
    const std::size_t shift = text.positionInWhole(start) - start;
    std::size_t endInWhole = end + shift;
    const CommandText value =
        LaunchScript::processMacro(MacroText(text.whole()), delimiter, start + shift, endInWhole);
    end = endInWhole - shift;
    return value;
  }

 private:
  Given m_given;
  mutable int m_calls = 0;
};

std::string resolved(const std::string& command, Given given) {
  TagFile tags;
  test::addTags(tags,
                {{"A", {"a"}}, {"CALL", {"%A%"}}, {"CLASSPATH", {"-cp "}}, {"SYSTEM", {"%"}}});
  const JVMFile jvm(tags);
  PlatformTestAccess::setCanceled(false);
  return test::outcome([&] { return Script(test::sstr(command), given).resolve(jvm); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::toText(data, std::min(size, kLongestText)));
  PlatformImpl::setSystemTempDir("/no/such/folder");  // nothing is created
  LauncherTestAccess::setLauncherFileName("/no/such/setup");
  fuzz::require(resolved(text, Given::Rest) == resolved(text, Given::WholeText));
  return 0;
}
