#include "jvm/JVMMatch.h"

#include "platform/PlatformImpl.h"
#include "platform/WriteError.h"

SString JVMMatch::writeNewJVMFile() {
  const SString path = PlatformImpl::createTempFile();
  m_tagFile.setDynamicJVMTags(m_home, path, m_temporary);
  throwIfNotWritten(m_tagFile.write(path));
  return path;
}

bool mustTryNext(const std::unique_ptr<JVMMatch>& match) {
  return match == nullptr && !PlatformImpl::isCanceled();
}
