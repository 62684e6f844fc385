// The interpreter on any script, with the operations stubbed. Each script ends, by itself or by the
// cancel flag; its status is that of its last launch; and a script that ends by itself does the
// same again when it is run again.
#include <sys/time.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

#include "fakes/FakeLauncherOperations.h"
#include "fuzz/Fuzzing.h"
#include "instructions/Instructions.h"
#include "support/ScriptSupport.h"

namespace {

constexpr int kMicrosecondsAllowed = 20'000;
constexpr std::size_t kCallsAllowed = 100;

// Processor time, so that a busy machine does not end an honest script.
void cancelAfter(int microseconds) {
  std::signal(SIGVTALRM, [](int) { PlatformTestAccess::setCanceled(true); });
  const struct itimerval timer = {{0, 0}, {0, microseconds}};
  setitimer(ITIMER_VIRTUAL, &timer, nullptr);
}

// Each operation sets the variables that the real ones set; a launch returns its number.
void pretendToOperate() {
  const auto number = static_cast<std::int32_t>(FakeLauncherOperations::calls().size());
  FakeLauncherOperations::setResults({number});
  LauncherFacts::setLongVariable(1, number % 2);
  LauncherFacts::setStringVariable(2, "/tmp/@cvj");
  if (FakeLauncherOperations::calls().size() > kCallsAllowed) {
    PlatformTestAccess::setCanceled(true);
  }
}

int numberOfLastLaunch() {
  const std::vector<std::string>& calls = FakeLauncherOperations::calls();
  const auto last = std::find_if(calls.rbegin(), calls.rend(), [](const std::string& call) {
    return call.find("launch ") < 2;  // "launch " or "ilaunch "
  });
  return static_cast<int>(calls.rend() - last);
}

std::string run(const TagFile& script) {
  FakeLauncherOperations::reset();
  FakeLauncherOperations::setHook(pretendToOperate);
  test::setVariables();
  PlatformTestAccess::setCanceled(false);
  cancelAfter(kMicrosecondsAllowed);
  const std::string outcome = test::outcomeOf([&] {
    const int result = Instructions(script).execute();
    fuzz::require(result == numberOfLastLaunch());
    return "ended";
  });
  cancelAfter(0);
  return outcome + test::describeVariables();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TagFile script;
  const std::string_view text = fuzz::toText(data, size);
  for (std::size_t start = 0; start < size;) {
    const std::size_t end = std::min(text.find('\n', start), size);
    script.appendTagValue("INSTRUCTIONS", SString(text.substr(start, end - start)));
    start = end + 1;
  }
  const std::string first = run(script);
  const bool wasCanceled = PlatformImpl::isCanceled();
  const std::string second = run(script);
  fuzz::require(first == second || wasCanceled || PlatformImpl::isCanceled());
  return 0;
}
