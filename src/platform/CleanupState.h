// CleanupState: what ends a run and what is cleaned up then: the third part of the process's state.
//
// `g_cleanup = {}` makes it that of a new process; each test begins so. Read and written by
// PlatformImpl's own files only. The signal handler touches m_signals alone.
#ifndef CORVANE_PLATFORM_CLEANUPSTATE_H
#define CORVANE_PLATFORM_CLEANUPSTATE_H

#include <sys/types.h>

#include <cstdint>
#include <optional>

#include "platform/SignalState.h"
#include "util/SString.h"
#include "util/StringDeque.h"

// The comment of a field says who writes it.
struct CleanupState {
  SignalState m_signals;                   // PlatformSignals, ChildProcess
  SString m_tempDir;                       // setSystemTempDir and its getter; absolute
  SString m_tempDirAsGiven;                // the same two, for messages
  std::uint64_t m_randomState = 0;         // randomName, where the system has no source
  StringDeque m_sdqCreatedFiles;           // createTempFile and the list operations
  StringDeque m_sdqCreatedDrs;             // createTempSubDirectory
  bool m_deleteLauncher = false;           // setDeleteLauncher
  std::optional<mode_t> m_inheritedUmask;  // prepareProcess
  bool m_warnedOfTempDir = false;          // getSystemTempDirectory
};

extern CleanupState g_cleanup;
inline constexpr SignalState& g_signals = g_cleanup.m_signals;

#endif
