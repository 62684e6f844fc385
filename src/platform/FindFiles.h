// FindFiles: the walk that looks for files by the end of their paths. It turns back at the mounts
// that MountTable names, and says so in the log.
#ifndef CORVANE_PLATFORM_FINDFILES_H
#define CORVANE_PLATFORM_FINDFILES_H

#include "platform/FileFindListener.h"
#include "platform/FileNavigator.h"
#include "platform/MountTable.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class FindFiles : public FileNavigator {
 public:
  // `names`: path endings such as "bin/java"; both referents must outlive this object. Throws as
  // PlatformImpl::getSystemTempDirectory.
  FindFiles(const StringDeque& names, FileFindListener& listener,
            MountTable mounts = MountTable::ofSystem());

  // Offers the path to the listener once for each name that it ends with, after a "/".
  bool processFile(const SString& path) override;
  bool skipDirectory(const SString& path) override;
  bool isKnownDirectory(const SString& path) const override;

 private:
  const StringDeque& m_names;
  FileFindListener& m_listener;
  SString m_tempDir;  // with a separator at its end
  MountTable m_mounts;
};

#endif
