#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "torture/Harness.h"
#include "torture/Registers.h"

namespace torture {

Worlds::Place& Worlds::at(const Scenario& scenario) {
  return at(scenario, [](World&) {});
}

Worlds::Place& Worlds::at(const Scenario& scenario, const std::function<void(World&)>& change) {
  std::unique_ptr<Place>& place = m_places[scenario.name];
  if (place == nullptr) {
    place.reset(new Place{World(scenario, m_stub), Outcome()});
    change(place->world);
    Watch watch;
    place->reference = place->world.run(watch);
    const Outcome& reference = place->reference;
    if (reference.ending.status != 0 || reference.ending.hung || !reference.left.empty()) {
      throw std::runtime_error(std::string("the untouched run of ") + scenario.name +
                               " fails: " + reference.out + reference.err + reference.log);
    }
  }
  return *place;
}

namespace {

template <class Try>
bool worksInChild(Try attempt) {
  const pid_t child = fork();
  if (child == 0) {
    _exit(attempt() ? 0 : 1);
  }
  int status = 0;
  return waitpid(child, &status, WUNTRACED) == child && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

}  // namespace

std::string whyNoTracing() {
  if (!canTraceHere()) {
    return "system calls cannot be changed on this architecture";
  }
  return worksInChild(Tracer::beTraced) ? "" : "ptrace is not permitted here";
}

std::string whyNoOwnRoot() {
  return worksInChild([] { return chroot("/") == 0; }) ? "" : "chroot is not permitted here";
}

}  // namespace torture
