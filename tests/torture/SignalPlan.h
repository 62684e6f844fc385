// What the kill harness does to one run: drawn by chance, from the seed and the case's number, so
// that it can be done again.
#ifndef CORVANE_TESTS_TORTURE_SIGNALPLAN_H
#define CORVANE_TESTS_TORTURE_SIGNALPLAN_H

#include <string>
#include <vector>

#include "torture/World.h"

namespace torture {

enum class Target { Launcher, Group, Child };

struct Shot {
  int signal;
  Target target;
};

enum class Aim {
  Time,      // at a moment
  Call,      // at a system call of the launcher or of one that it has started
  Terminal,  // the terminal is closed at a moment: the kernel sends HUP
};

struct SignalPlan {
  Aim aim;
  const Scenario* scenario;
  std::vector<Shot> shots;  // one or two
  double when;              // 0 to 1: of the time, or of the calls of the process
  double who;               // 0 to 1: which process
  double between;           // 0 to 1: how long to the second shot
  int process = -1;         // instead of `who`

  std::string text() const;
};

// `name`: "time/N", "call/N", "terminal/N", or "shell/N" for each call of the wizard's shell in
// turn.
constexpr int kShellPlans = 480;
SignalPlan drawPlan(const std::string& name, unsigned seed);

}  // namespace torture

#endif
