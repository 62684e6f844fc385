// CleanupAfterExec: the clean-up of a process that becomes another program.
//
// Such a process cannot clean up afterwards, and must not before: when the program does not start,
// the run goes on and needs its files. So a helper process waits. It learns of the start since the
// system closes its connection then; it cleans up and ends. It belongs to nobody, so that the new
// program finds no child that it does not know.
#ifndef CORVANE_PLATFORM_CLEANUPAFTEREXEC_H
#define CORVANE_PLATFORM_CLEANUPAFTEREXEC_H

#include "util/SString.h"

class CleanupAfterExec {
 public:
  // `keptDirectory` is registered for clean-up, too, and is the one that is to stay.
  explicit CleanupAfterExec(const SString& keptDirectory) { start(keptDirectory); }
  // No program has started: the helper ends, and nothing is cleaned up.
  ~CleanupAfterExec();
  CleanupAfterExec(const CleanupAfterExec&) = delete;
  CleanupAfterExec& operator=(const CleanupAfterExec&) = delete;

  // False when the system gave no helper: then no program may be started.
  bool isReady() const { return m_connection != -1; }

 private:
  void start(const SString& keptDirectory);
  void disconnect();

  int m_connection = -1;
};

#endif
