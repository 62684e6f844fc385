// Report: counts the cases of all workers, and tells of each failure in one line with how to repeat
// it. Failures that are known stand in a list with their reasons, and do not count.
//
// The list (tests/torture/expected.txt) has lines of three parts, the first two are patterns as of
// file names:   HARNESS/CASE | PROBLEM | why this is so
#ifndef CORVANE_TESTS_TORTURE_REPORT_H
#define CORVANE_TESTS_TORTURE_REPORT_H

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "torture/World.h"

namespace torture {

struct Options {
  std::string stub;
  std::string only;  // a harness; empty: all
  std::string oneCase;
  std::string expected;  // path of the list; empty: none
  bool isShort = false;
  bool isVerbose = false;
  unsigned seed = 1;
  int jobs = 0;
  int signals = 0;  // 0: as many as the form of the run has
};

using Problems = std::vector<std::string>;

class Report {
 public:
  Report(std::string harness, const Options& options);
  ~Report();
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  // Each number below `count` is performed once, in as many processes as the options say; each of
  // them makes a performer of its own.
  using Perform = std::function<void(std::size_t)>;
  void work(std::size_t count, const std::function<Perform()>& makePerformer);
  // From any worker: how a case ended. `what` says what was done, for people.
  void add(const std::string& name, const std::string& what, const Problems& problems,
           const Outcome& outcome);
  void skip(const std::string& why);
  // One line for machines, behind the lines of the list that no case of a whole run has met. True
  // when no case failed.
  bool finish() const;

 private:
  static constexpr std::size_t kMostExpected = 256;
  struct Counts {
    std::atomic<int> cases, failed, expected, skipped, broken;
    std::atomic<std::size_t> next;
    std::atomic<bool> met[kMostExpected];  // for each line of the list
  };
  void performAll(std::size_t count, const std::function<Perform()>& makePerformer);
  bool isExpected(const std::string& full, const std::string& problem) const;
  void tellOfUnmet() const;

  std::string m_harness;
  const Options& m_options;
  std::vector<std::pair<std::string, std::string>> m_expected;
  Counts* m_counts;  // shared by all workers
};

}  // namespace torture

#endif
