// Failures of the system, on request. For use in an OwnProcess: most cannot be undone.
#ifndef CORVANE_TESTS_SUPPORT_RESTRICTIONS_H
#define CORVANE_TESTS_SUPPORT_RESTRICTIONS_H

namespace test {

// Each returns false when that is not possible here.

// Sets the limit of a resource (RLIMIT_...), which can be raised again.
bool limit(int resource, unsigned long value);
// fork(2) fails with EAGAIN.
bool forbidProcesses();
// Waiting for a child fails with ECHILD.
bool forbidWaiting();
// dup2(2) fails with EBUSY.
bool forbidRedirection();
// There is no /proc. An ordinary user may have that in a user namespace of his own.
bool hideProc();

void closeAllDescriptorsButStandardOnes();

}  // namespace test

#endif
