// Lets a test that runs as root meet the limits of an ordinary user.
#ifndef CORVANE_TESTS_SUPPORT_ORDINARYUSER_H
#define CORVANE_TESTS_SUPPORT_ORDINARYUSER_H

#include <gtest/gtest.h>
#include <unistd.h>

namespace test {

// For the length of a scope the process has the rights of "nobody", when it had those of root. What
// the test made before must be open to everybody.
class OrdinaryUser {
 public:
  OrdinaryUser() : m_wasRoot(geteuid() == 0) {
    if (m_wasRoot) {
      EXPECT_EQ(0, seteuid(kNobody));
    }
  }
  ~OrdinaryUser() {
    if (m_wasRoot) {
      EXPECT_EQ(0, seteuid(0));
    }
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  bool m_wasRoot;
};

}  // namespace test

#endif
