// Leaves nothing of a test behind, however it ends.
//
// A test that is killed cannot clean up: what it started would run on, and its scratch folders
// would stay. So a guard, a process that nobody kills with the test, stands between:
//
//   the process that was started ........ the guard ---- the tests ---- what they start
//              (a pipe to each other)       adopts whatever lost its parent
//
// When the tests have ended, or the process that was started has, the guard kills all that is left
// below it and removes the folder that TMPDIR named for the tests.
#ifndef CORVANE_TESTS_SUPPORT_GUARD_H
#define CORVANE_TESTS_SUPPORT_GUARD_H

#include <functional>

namespace test {

// The same surroundings for everybody: umask 022, no locale, no signal ignored or blocked.
void fixSurroundings();

// Runs `body` under a guard and returns its result, or ends by the signal that ended it. Runs it
// without a guard in a debugger, and on systems where no process can adopt others.
int runGuarded(const std::function<int()>& body);

}  // namespace test

#endif
