// Makes the process new before each test, so that the tests of a program can run in one process, in
// any order and repeatedly.
#ifndef CORVANE_TESTS_SUPPORT_NEWPROCESS_H
#define CORVANE_TESTS_SUPPORT_NEWPROCESS_H

namespace test {

// From now on each test begins with our own state as in a new process, and with environment,
// current folder, umask and signals as they are now. Standard input is empty.
void beginEachTestAsNewProcess();

}  // namespace test

#endif
