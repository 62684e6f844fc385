#include "platform/WriteError.h"

#include <cerrno>

#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

void throwWriteError(const SString& detail) {
  throw WriteError(PlatformImpl::getMessageText(MSG_WRITE_FILE_ERROR) + detail +
                   PlatformImpl::getMessageText(MSG_TEMP_SPACE_HINT));
}

void throwIfNotWritten(int error) {
  if (error == EINTR) {
    PlatformImpl::throwIfCanceled();
  }
  if (error != 0) {
    throwWriteError(convertToString(error));
  }
}
