// FileFindListener: receives the files that a search of the disks finds.
#ifndef CORVANE_PLATFORM_FILEFINDLISTENER_H
#define CORVANE_PLATFORM_FILEFINDLISTENER_H

#include "util/SString.h"

class FileFindListener {
 public:
  virtual ~FileFindListener() = default;
  // True ends the search.
  virtual bool foundFile(const SString& path) = 0;
};

#endif
