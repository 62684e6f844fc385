#include "jvm/JVMMatch.h"

#include "platform/PlatformImpl.h"

SString JVMMatch::writeNewJVMFile() {
  const SString path = PlatformImpl::createTempFile();
  m_tagFile.setDynamicJVMTags(m_home, path, m_temporary);
  (void)m_tagFile.write(path);
  return path;
}

bool mustTryNext(const std::unique_ptr<JVMMatch>& match) {
  return match == nullptr && !PlatformImpl::isCanceled();
}
