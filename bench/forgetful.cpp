// A memory that keeps nothing: with it the launcher starts a Java each time that it asks one. It is
// what bench/run.sh compares with.
#include "jvm/VerificationMemory.h"
#include "platform/PlatformImpl.h"

ProcessResult VerificationMemory::ask(const CommandText&, const ProcessRequest& request, bool) {
  return PlatformImpl::executeProcess(request);
}

VerificationMemory& VerificationMemory::ofRun() {
  static VerificationMemory memory;
  return memory;
}

void VerificationMemory::forget() {}
