// What a tracer changes in a process that it has stopped at a system call.
#ifndef CORVANE_TESTS_TORTURE_REGISTERS_H
#define CORVANE_TESTS_TORTURE_REGISTERS_H

#include <sys/types.h>

namespace torture {

// False on an architecture that we do not know.
bool canTraceHere();

// At the entry: the call is not done.
void skipCall(pid_t pid);
// The call's first argument. What was changed at the entry has to be put back at the exit: programs
// rely on it that a call changes none of its arguments.
void setFirstArgument(pid_t pid, long value);
// At the exit: the call gives `result`; a negative one is an error.
void setResult(pid_t pid, long result);

}  // namespace torture

#endif
