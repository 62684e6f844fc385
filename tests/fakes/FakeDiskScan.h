// The scan of the disks, held to folders of the test: no unit test ever walks the machine's own.
//
// FakeDiskScan.cpp defines PlatformImpl::findFiles, so that a program that links it gets this one
// instead of the library's. The walk itself is the real one.
#ifndef CORVANE_TESTS_FAKES_FAKEDISKSCAN_H
#define CORVANE_TESTS_FAKES_FAKEDISKSCAN_H

#include <functional>
#include <string>
#include <vector>

namespace test {

struct FakeDiskScan {
  static std::vector<std::string> roots;  // walked in this order; none at first
  static std::vector<std::string> names;  // what the last scan looked for
  static std::function<void()> atEnd;     // called when the scan has ended
  static void reset();
};

}  // namespace test

#endif
