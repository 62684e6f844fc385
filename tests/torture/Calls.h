// The system calls that can fail, and the errors that each can give.
#ifndef CORVANE_TESTS_TORTURE_CALLS_H
#define CORVANE_TESTS_TORTURE_CALLS_H

#include <cstdint>
#include <string>
#include <vector>

namespace torture {

// How a call is made to fail.
enum class Way {
  Refuse,     // it is not done and gives the error
  DoAndFail,  // it is done and gives the error: a descriptor is closed, even when close(2) fails
  Stay,       // brk(2) tells a failure by staying where it is
};

struct FallibleCall {
  const char* name;
  long number;
  Way way;
  std::vector<int> errors;
};

// Null for a call that cannot fail, or not in a way that a program could meet.
const FallibleCall* fallibleCall(long number);
const FallibleCall* fallibleCall(const std::string& name);

// The errors for this very call: those of the row, and ENOSPC where a file is to be made.
std::vector<int> errorsOf(const FallibleCall& call, const std::uint64_t* args);
// False where this call never fails for a program that is in order: fcntl(2) asking for flags.
bool canFail(const FallibleCall& call, const std::uint64_t* args);

// "ENOSPC" and back; 0 for a name that is unknown.
std::string errorName(int error);
int errorNumber(const std::string& name);

}  // namespace torture

#endif
