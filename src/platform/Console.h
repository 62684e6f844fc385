// Console: the writers and the reader under the launcher's user interface, and their state.
//
// Used by PlatformImpl's console operations; other code goes through those. Standard output and
// input only. Text ends at its first zero byte; nothing is converted on its way. Write errors are
// ignored: the launcher does its work even when nobody reads its output.
#ifndef CORVANE_PLATFORM_CONSOLE_H
#define CORVANE_PLATFORM_CONSOLE_H

#include <cstdint>

#include "platform/ConsoleTexts.h"
#include "util/SString.h"

// The console's part of the process's state. `g_console = {}` makes it that of a new process; each
// test begins so. The comment of a field says who writes it.
struct ConsoleState {
  bool g_enableOutput = true;                   // showUI, hideUI
  bool m_silent = false;                        // setSilent
  bool m_outputIsClosed = false;                // prepareProcess; by whoever started us
  SString g_title;                              // setUITitle; the product's name in status lines
  std::int32_t ui_progress = 0;                 // setUIProgress, advanceUIProgress
  std::int32_t ui_progressBlock = 0;            // setUIProgress; rows of dots that were closed
  UISubStatus m_subStatus = UI_SUBSTATUS_NONE;  // setUISubStatus
  SString m_subStatusData;                      // setUISubStatus
};

extern ConsoleState g_console;

// The text and a newline; nothing while output is disabled.
void writeLine(const SString& text);
void writeLine(const char* text);

// The text without a newline, at once; nothing while output is disabled. `text` is a format of
// printf without arguments: only texts of the catalogue that hold no "%s" may go here.
void write(const char* text);

// One word of standard input: white space is skipped, then everything up to the next white space is
// taken. It ends early, perhaps empty, when the input ends, a signal interrupts, or after 64 KiB
// (the rest stays to be read). What follows a zero byte in the word is dropped.
SString getLine();

#endif
