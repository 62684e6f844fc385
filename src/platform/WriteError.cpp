#include "platform/WriteError.h"

#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

void throwWriteError(const SString& detail) {
  throw LauncherException(PlatformImpl::getMessageText(MSG_WRITE_FILE_ERROR) + detail +
                          PlatformImpl::getMessageText(MSG_TEMP_SPACE_HINT));
}

void throwIfNotWritten(int error) {
  if (error != 0) {
    throwWriteError(convertToString(error));
  }
}
