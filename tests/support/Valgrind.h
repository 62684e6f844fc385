// For the tests that valgrind cannot run.
#ifndef CORVANE_TESTS_SUPPORT_VALGRIND_H
#define CORVANE_TESTS_SUPPORT_VALGRIND_H

#include <cstdlib>
#include <string_view>

namespace test {

// Valgrind preloads libraries of its own into the program that it runs.
inline bool isUnderValgrind() {
  const char* const preloaded = std::getenv("LD_PRELOAD");
  return preloaded != nullptr &&
         std::string_view(preloaded).find("vgpreload") != std::string_view::npos;
}

constexpr const char* kNoFailingExec = "valgrind ends a process whose exec fails";

}  // namespace test

#endif
