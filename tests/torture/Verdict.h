// What must hold after each case, whatever was done to the run.
#ifndef CORVANE_TESTS_TORTURE_VERDICT_H
#define CORVANE_TESTS_TORTURE_VERDICT_H

#include <string>
#include <vector>

#include "torture/World.h"

namespace torture {

// What was done to the run.
struct Harm {
  // Failing calls, or a file system that cannot do what is asked.
  bool onOutput = false;   // standard output or standard error, so that nothing can be shown
  bool onLog = false;      // the log, or so much that it could not be written either
  bool onRemoval = false;  // what cannot be removed may stay, when the log tells of it
  bool onResult = false;   // a write to a temporary file, which also a silent action logs
  bool harmless = false;   // a right program does not let anybody notice it

  // Signals, in their order.
  std::vector<int> signals;
  bool handled = false;       // the launcher had its handlers when the first one came
  bool toChild = false;       // the launcher itself got none
  bool toChildFirst = false;  // a child had one before the launcher had one that cancels
};

// One line for each thing that is not as it must be; `reference` is a run that nothing was done to.
std::vector<std::string> judgeFault(const World& world, const Harm& harm, const Outcome& outcome,
                                    const Outcome& reference);
std::vector<std::string> judgeSignals(const World& world, const Harm& harm, const Outcome& outcome,
                                      const Outcome& reference);

}  // namespace torture

#endif
