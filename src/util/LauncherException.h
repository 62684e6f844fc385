// LauncherException: the one error that leaves an operation of the launcher.
//
// It carries one complete text that can be shown to the user. A caller that knows which step failed
// rethrows with its own words before it (`LauncherException::prefixed`).
#ifndef CORVANE_UTIL_LAUNCHEREXCEPTION_H
#define CORVANE_UTIL_LAUNCHEREXCEPTION_H

#include <exception>
#include <utility>

#include "util/SString.h"

class LauncherException : public std::exception {
 public:
  explicit LauncherException(SString message) : m_message(std::move(message)) {}

  // The same failure with `prefix` directly before its text (no blank is added).
  static LauncherException prefixed(const SString& prefix, const LauncherException& cause) {
    return LauncherException(prefix + cause.m_message);
  }

  const SString& getMessage() const { return m_message; }
  const char* what() const noexcept override { return m_message.c_str(); }

 private:
  SString m_message;
};

// A cancel by the user: no step adds its words, and nothing more is started.
class Canceled : public LauncherException {
 public:
  using LauncherException::LauncherException;
};

#endif
