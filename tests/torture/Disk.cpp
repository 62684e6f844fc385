// The disk harness: small, closed, noexec and dead file systems, and outputs that take nothing.
//
// A case is named SCENARIO/SURROUNDING, "launch/temp-pages-3".
#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <list>
#include <memory>

#include "torture/Harness.h"
#include "torture/PrivateMounts.h"
#include "torture/Verdict.h"
#include "torture/VerdictParts.h"

namespace torture {
namespace {

using Mounts = std::list<Mount>;

struct Surrounding {
  std::string name;
  std::function<void(World&, Mounts&)> prepare;
  bool onOutput = false;
  bool onLog = false;
  bool harmless = false;
  std::vector<std::string> scenarios = {};  // empty: all but the scan
  std::string logged = "";                  // has to stand in the log
  std::chrono::seconds limit{40};
};

constexpr long kPage = 4096;

Surrounding small(const std::string& folder, const std::string& unit, const std::string& option,
                  long count, long factor, std::vector<std::string> scenarios) {
  return {.name = folder + "-" + unit + "-" + std::to_string(count),
          .prepare =
              [=](World& world, Mounts& mounts) {
                mounts.push_back(Mount::tmpfs(world.outside(folder),
                                              option + "=" + std::to_string(count * factor), 0));
              },
          .scenarios = std::move(scenarios)};
}

Surrounding flagged(const std::string& name, unsigned long flags) {
  return {.name = name, .prepare = [flags](World& world, Mounts& mounts) {
            mounts.push_back(Mount::tmpfs(world.outside("temp"), "size=16m", flags));
          }};
}

void addSmall(std::vector<Surrounding>& all, bool isShort) {
  const std::vector<long> pages =
      isShort ? std::vector<long>{1, 2, 3, 27, 233}
              : std::vector<long>{1,  2,  3,  4,  5,  6,  8,   12,  15,  16,  17,  24,  25,  26, 27,
                                  28, 29, 30, 31, 32, 64, 128, 232, 233, 234, 257, 258, 259, 260};
  for (const long count : pages) {
    all.push_back(small("temp", "pages", "size", count, kPage, {}));
    all.push_back(small("current", "pages", "size", count, kPage, {"extract"}));
    all.push_back(small("dest", "pages", "size", count, kPage, {"install"}));
  }
  for (long count = 1; count <= 8; ++count) {
    all.push_back(small("temp", "inodes", "nr_inodes", count, 1, {}));
    all.push_back(small("current", "inodes", "nr_inodes", count, 1, {"extract"}));
    all.push_back(small("dest", "inodes", "nr_inodes", count, 1, {"install"}));
  }
}

bool breakOutput() {
  int ends[2];
  return pipe2(ends, O_CLOEXEC) == 0 && dup2(ends[1], STDOUT_FILENO) == STDOUT_FILENO &&
         close(ends[0]) == 0;
}

void addOutputs(std::vector<Surrounding>& all) {
  const auto preparing = [](std::function<bool()> prepare) {
    return [prepare](World& world, Mounts&) { world.command.prepare = prepare; };
  };
  all.push_back({.name = "output-full",
                 .prepare = [](World& world, Mounts&) { world.command.output = "/dev/full"; },
                 .onOutput = true});
  all.push_back({.name = "output-closed",
                 .prepare = preparing([] { return close(STDOUT_FILENO) == 0; }),
                 .onOutput = true});
  all.push_back({.name = "output-broken", .prepare = preparing(breakOutput), .onOutput = true});
  all.push_back({.name = "log-full",
                 .prepare =
                     [](World& world, Mounts&) {
                       std::replace(world.command.arguments.begin(), world.command.arguments.end(),
                                    world.inside("log.txt"), std::string("/dev/full"));
                     },
                 .onLog = true,
                 .harmless = true});
}

void addMounts(std::vector<Surrounding>& all) {
  all.push_back(flagged("temp-read-only", MS_RDONLY));
  all.push_back(flagged("temp-noexec", MS_NOEXEC));
  all.push_back({.name = "temp-noexec-told",
                 .prepare = all.back().prepare,
                 .scenarios = {"install-launch"},
                 .logged = "ermission denied"});
}

void addDeadMount(std::vector<Surrounding>& all) {
  all.push_back({.name = "dead-mount",
                 .prepare =
                     [](World& world, Mounts& mounts) {
                       mounts.push_back(Mount::bind("/proc", world.outside("proc")));
                       mounts.push_back(Mount::dead(world.outside("a-dead-one")));
                     },
                 .scenarios = {"scan"},
                 .logged = "/a-dead-one",
                 .limit = std::chrono::seconds(15)});
}

struct Case {
  const Scenario* scenario;
  const Surrounding* surrounding;

  std::string name() const { return scenario->name + ("/" + surrounding->name); }
};

bool isFor(const Surrounding& surrounding, const Scenario& scenario) {
  const auto& names = surrounding.scenarios;
  return names.empty() ? !scenario.scans
                       : std::find(names.begin(), names.end(), scenario.name) != names.end();
}

void perform(const Case& one, Worlds& worlds, Report& report) {
  auto& [world, reference] = worlds.at(*one.scenario);
  const Surrounding& surrounding = *one.surrounding;
  const Command usual = world.command;
  Outcome outcome;
  {
    Mounts mounts;
    surrounding.prepare(world, mounts);
    Watch watch;
    outcome = world.run(watch, surrounding.limit);
  }
  world.command = usual;
  Harm harm;
  harm.onOutput = surrounding.onOutput;
  harm.onLog = surrounding.onLog;
  harm.harmless = surrounding.harmless;
  std::vector<std::string> problems = judgeFault(world, harm, outcome, reference);
  if (!contains(outcome.log, surrounding.logged)) {
    problems.push_back("the log does not tell of \"" + surrounding.logged + "\"");
  }
  report.add(one.name(), surrounding.name, problems, outcome);
}

std::vector<Case> casesOf(const std::vector<Surrounding>& surroundings, const Options& options) {
  std::vector<Case> cases;
  for (const Surrounding& surrounding : surroundings) {
    for (const Scenario& scenario : scenarios()) {
      const Case one{&scenario, &surrounding};
      const bool isWanted = options.oneCase.empty() || options.oneCase == one.name();
      if (isWanted && isFor(surrounding, scenario)) {
        cases.push_back(one);
      }
    }
  }
  return cases;
}

}  // namespace

bool tortureWithDisks(const Options& options) {
  Report report("disk", options);
  std::vector<Surrounding> surroundings;
  addOutputs(surroundings);
  const std::string noMounts = whyNoPrivateMounts();
  if (noMounts.empty()) {
    addMounts(surroundings);
    addSmall(surroundings, options.isShort);
    const std::string noDeadMount = whyNoDeadMount();
    if (noDeadMount.empty()) {
      addDeadMount(surroundings);
    } else {
      report.skip("dead-mount: " + noDeadMount);
    }
  } else {
    report.skip(noMounts);
  }
  const std::vector<Case> cases = casesOf(surroundings, options);
  report.work(cases.size(), [&] {
    if (noMounts.empty()) {
      enterPrivateMounts();
    }
    auto worlds = std::make_shared<Worlds>(options.stub);
    return [&, worlds](std::size_t i) { perform(cases[i], *worlds, report); };
  });
  return report.finish();
}

}  // namespace torture
