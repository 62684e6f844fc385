// SubStatusWrapper: restores the console's sub-status at the end of a scope.
#ifndef CORVANE_PLATFORM_SUBSTATUSWRAPPER_H
#define CORVANE_PLATFORM_SUBSTATUSWRAPPER_H

#include "platform/PlatformImpl.h"

class SubStatusWrapper {
 public:
  SubStatusWrapper()
      : m_saved(PlatformImpl::getUISubStatus()), m_savedData(PlatformImpl::getUISubStatusData()) {}
  ~SubStatusWrapper() { PlatformImpl::setUISubStatus(m_saved, m_savedData); }
  SubStatusWrapper(const SubStatusWrapper&) = delete;
  SubStatusWrapper& operator=(const SubStatusWrapper&) = delete;

 private:
  UISubStatus m_saved;
  SString m_savedData;
};

#endif
