// The three harnesses. Each returns true when no case failed.
#ifndef CORVANE_TESTS_TORTURE_HARNESS_H
#define CORVANE_TESTS_TORTURE_HARNESS_H

#include <map>
#include <memory>
#include <string>

#include "torture/Report.h"
#include "torture/World.h"

namespace torture {

bool tortureWithFaults(const Options& options);
bool tortureWithSignals(const Options& options);
bool tortureWithDisks(const Options& options);

// A worker's worlds, one for each scenario, made when they are first needed, with a run that
// nothing was done to.
class Worlds {
 public:
  explicit Worlds(std::string stub) : m_stub(std::move(stub)) {}

  struct Place {
    World world;
    Outcome reference;
  };
  Place& at(const Scenario& scenario);
  // The same with something changed in the world before its first run.
  Place& at(const Scenario& scenario, const std::function<void(World&)>& change);

 private:
  std::string m_stub;
  std::map<std::string, std::unique_ptr<Place>> m_places;
};

// Whether this machine permits it, for this user; else why not.
std::string whyNoTracing();
std::string whyNoOwnRoot();

}  // namespace torture

#endif
