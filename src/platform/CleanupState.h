// CleanupState: what ends a run and what is to be done then; the third of the process's values.
//
// `g_cleanup = {}` is a new process: so the tests begin. Read and written by PlatformImpl's own
// files only. A signal handler reads and writes the numbers among the fields; it touches no text
// and no list.
#ifndef CORVANE_PLATFORM_CLEANUPSTATE_H
#define CORVANE_PLATFORM_CLEANUPSTATE_H

#include <sys/types.h>

#include <csignal>
#include <cstdint>

#include "util/SString.h"
#include "util/StringDeque.h"

// A signal that asked us to cancel.
struct CancelWish {
  int signal;
  pid_t sender;
  std::int64_t time;  // nanoseconds, monotonic
};

// Behind each field: who writes it.
struct CleanupState {
  static constexpr int kSignalCount = 6;

  volatile std::sig_atomic_t m_canceled = 0;      // the signal handler
  volatile pid_t m_child = 0;                     // 0: none; executeProcess
  CancelWish m_lastWish{};                        // signal 0: none; the signal handler
  struct sigaction m_inherited[kSignalCount] {};  // what we were started with; prepareProcess
  bool m_isPrepared = false;                      // m_inherited is known; prepareProcess
  SString m_tempDir;                              // setSystemTempDir and its getter; absolute
  SString m_tempDirAsGiven;                       // the same two, for messages
  std::uint64_t m_randomState = 0;                // randomName, where the system has no source
  StringDeque m_sdqCreatedFiles;                  // createTempFile and the list operations
  StringDeque m_sdqCreatedDrs;                    // createTempSubDirectory
  bool m_deleteLauncher = false;                  // setDeleteLauncher
};

extern CleanupState g_cleanup;

#endif
