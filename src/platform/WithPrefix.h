// withPrefix: runs one step of the launcher and names the step when it fails.
#ifndef CORVANE_PLATFORM_WITHPREFIX_H
#define CORVANE_PLATFORM_WITHPREFIX_H

#include "platform/PlatformImpl.h"
#include "util/LauncherException.h"

// Rethrows a LauncherException of `step` with the text of `failed` directly before its own.
// Canceled passes as it is.
template <class Step>
void withPrefix(MessageIdentifier failed, Step step) {
  try {
    step();
  } catch (const Canceled&) {
    throw;
  } catch (const LauncherException& e) {
    throw LauncherException::prefixed(PlatformImpl::getMessageText(failed), e);
  }
}

#endif
