// What a calling program reads on our standard output: lines that must not get lost.
#ifndef CORVANE_PLATFORM_RESULTLINES_H
#define CORVANE_PLATFORM_RESULTLINES_H

#include <initializer_list>

#include "util/LauncherException.h"
#include "util/SString.h"

// The output is full, closed or broken, so that nobody learns the result.
class LostResult : public LauncherException {
 public:
  using LauncherException::LauncherException;
};

// Prints the lines, whatever is hidden or silent, and makes sure that they have arrived. Throws
// LostResult, "Cannot write to standard output: " and the system's text, and Canceled when a cancel
// ends the wait for a reader.
void printResult(std::initializer_list<SString> lines);
// The same for a text that silent mode suppresses.
void showResult(const SString& text);

#endif
