// Scan: the fixture of the end-to-end tests that scan a whole disk: one of their own, behind
// chroot.
#ifndef CORVANE_TESTS_E2E_SCANFIXTURE_H
#define CORVANE_TESTS_E2E_SCANFIXTURE_H

#include <functional>
#include <string>
#include <vector>

#include "e2e/LauncherTest.h"

namespace e2e {

// The disk is dir("jail"). It holds a shell, /tmp, and the launcher in /app.
class Scan : public LauncherTest {
 protected:
  void SetUp() override;

  // Called in the child just before the disk becomes its root; false: the run fails.
  void setPrepareDisk(std::function<bool()> prepare) { m_prepareDisk = std::move(prepare); }
  // Makes a JVM at `home` on the disk; returns `home`.
  std::string place(const std::string& home, const std::string& version);
  // Puts the shared libraries of these programs (in words of the shell) on the disk.
  void bringLibrariesOf(const std::string& programs);
  // As `run`, with a temporary directory and a log on the disk.
  Result runInside(const std::vector<std::string>& args);

 private:
  std::function<bool()> m_prepareDisk;
};

}  // namespace e2e

#endif
