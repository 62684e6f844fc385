// CleanupState: what ends a run and what is to be done then; the third of the process's values.
//
// `g_cleanup = {}` is a new process: so the tests begin. Read and written by PlatformImpl's own
// files only. The signal handler touches m_signals alone.
#ifndef CORVANE_PLATFORM_CLEANUPSTATE_H
#define CORVANE_PLATFORM_CLEANUPSTATE_H

#include <cstdint>

#include "platform/SignalState.h"
#include "util/SString.h"
#include "util/StringDeque.h"

// Behind each field: who writes it.
struct CleanupState {
  SignalState m_signals;            // PlatformSignals, ChildProcess
  SString m_tempDir;                // setSystemTempDir and its getter; absolute
  SString m_tempDirAsGiven;         // the same two, for messages
  std::uint64_t m_randomState = 0;  // randomName, where the system has no source
  StringDeque m_sdqCreatedFiles;    // createTempFile and the list operations
  StringDeque m_sdqCreatedDrs;      // createTempSubDirectory
  bool m_deleteLauncher = false;    // setDeleteLauncher
};

extern CleanupState g_cleanup;
inline constexpr SignalState& g_signals = g_cleanup.m_signals;

#endif
