// Stand-ins for the operations that the instruction script calls (a link seam): the program that
// links FakeLauncherOperations.cpp runs scripts without a console, a disk or a JVM.
//
// Each call is recorded as one line, such as "findJVM 1 0" or "launch [/a b] 5".
#ifndef CORVANE_TESTS_FAKES_FAKELAUNCHEROPERATIONS_H
#define CORVANE_TESTS_FAKES_FAKELAUNCHEROPERATIONS_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class FakeLauncherOperations {
 public:
  // Forgets the calls and everything that was set below.
  static void reset();

  static const std::vector<std::string>& calls() { return m_calls; }
  // What launch and ilaunch return, one call after the other; 0 when there is no more.
  static void setResults(std::vector<std::int32_t> results) { m_results = std::move(results); }
  // Runs at every call, behind its record; it may throw. Null: nothing.
  static void setHook(std::function<void()> hook) { m_hook = std::move(hook); }
  // Switches the record off, for scripts that run for long.
  static void setRecording(bool recording) { m_recording = recording; }

  // For the stand-ins themselves.
  static void record(const std::string& call);
  static std::int32_t nextResult();

 private:
  static std::vector<std::string> m_calls;
  static std::vector<std::int32_t> m_results;
  static std::function<void()> m_hook;
  static bool m_recording;
};

#endif
