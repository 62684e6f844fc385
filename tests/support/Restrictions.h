// Failures of the system, made to order. For processes of their own (OwnProcess): most cannot be
// taken back.
#ifndef CORVANE_TESTS_SUPPORT_RESTRICTIONS_H
#define CORVANE_TESTS_SUPPORT_RESTRICTIONS_H

namespace test {

// Each returns false when that cannot be had here.

// Sets the limit of a resource (RLIMIT_...), which can be raised again.
bool limit(int resource, unsigned long value);
// fork(2) fails with EAGAIN.
bool forbidProcesses();
// Waiting for a child fails with ECHILD.
bool forbidWaiting();
// dup2(2) fails with EBUSY.
bool forbidRedirection();

void closeAllDescriptorsButStandardOnes();

}  // namespace test

#endif
