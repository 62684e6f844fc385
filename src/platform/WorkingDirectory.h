// WorkingDirectory: makes a directory the current one until the end of the scope.
//
// An empty name changes nothing. The way back is a descriptor, which holds when the path is too
// long or was renamed meanwhile. Used around the start of a child, which inherits the directory.
#ifndef CORVANE_PLATFORM_WORKINGDIRECTORY_H
#define CORVANE_PLATFORM_WORKINGDIRECTORY_H

#include "util/SString.h"

class WorkingDirectory {
 public:
  // Throws "Error setting working directory: PATH " and the system's text.
  explicit WorkingDirectory(const SString& path);
  ~WorkingDirectory();
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  void remember();

  int m_old = -1;
  SString m_oldPath;  // used when the old directory cannot be opened
};

#endif
