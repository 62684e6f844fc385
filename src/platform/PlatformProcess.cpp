// Child processes: PlatformImpl's operations that run a command or become it.
#include <unistd.h>

#include <cstdio>
#include <vector>

#include "platform/ChildProcess.h"
#include "platform/PlatformImpl.h"
#include "platform/PlatformSignals.h"
#include "platform/WorkingDirectory.h"

ProcessResult PlatformImpl::executeProcess(const ProcessRequest& request) {
  std::fflush(stdout);
  ChildProcess child(request);
  {
    const WorkingDirectory during(request.workingDir);
    child.start();
  }
  return child.wait();
}

void PlatformImpl::replaceProcess(const StringDeque& words) {
  std::vector<char*> arguments;
  arguments.reserve(static_cast<std::size_t>(words.size()) + 1);
  for (long i = 0; i < words.size(); ++i) {
    arguments.push_back(const_cast<char*>(words[i].c_str()));
  }
  arguments.push_back(nullptr);
  std::fflush(stdout);
  if (arguments[0] != nullptr) {
    const SignalHold signals;
    signals.deliverHeld();
    throwIfCanceled();
    signals.restoreInherited();
    execvp(arguments[0], arguments.data());
  }
}
