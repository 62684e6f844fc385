// The interpreter on any script, with the operations stubbed. Each script ends, by itself or by the
// cancel flag; its status is that of its last launch; and a script that ends by itself does the
// same again when it is run again.
#include <sys/time.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fakes/FakeLauncherOperations.h"
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
  Launcher::setLongVariable(1, number % 2);
  Launcher::setStringVariable(2, "/tmp/@cvj");
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
    return result == numberOfLastLaunch() ? "result" : (std::abort(), "");
  });
  cancelAfter(0);
  return outcome + test::describeVariables();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TagFile script;
  for (std::size_t start = 0; start < size;) {
    const auto* end = std::find(data + start, data + size, '\n');
    const std::size_t length = static_cast<std::size_t>(end - data) - start;
    const SString line(reinterpret_cast<const char*>(data) + start, length);
    script.appendTagValue("INSTRUCTIONS", line);
    start += length + 1;
  }
  const std::string first = run(script);
  const bool wasCanceled = PlatformImpl::isCanceled();
  const std::string second = run(script);
  if (first != second && !wasCanceled && !PlatformImpl::isCanceled()) {
    std::abort();
  }
  return 0;
}
