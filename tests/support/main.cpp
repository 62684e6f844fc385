// The main of every test program.
#include <gtest/gtest.h>

#include "support/Guard.h"
#include "support/NewProcess.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  test::fixSurroundings();
  if (testing::GTEST_FLAG(list_tests)) {
    return RUN_ALL_TESTS();
  }
  return test::runGuarded([] {
    test::beginEachTestAsNewProcess();
    return RUN_ALL_TESTS();
  });
}
