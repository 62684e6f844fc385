// The kill harness: signals at any moment to the launcher, its child and its group; at chosen
// system calls of all that is started; and from a terminal that is closed.
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "torture/Harness.h"
#include "torture/SignalPlan.h"
#include "torture/Verdict.h"

namespace torture {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr const char* kWork = "15";  // milliseconds that a wizard takes
// So long the process that a shot was aimed at is held there, so that the others act first.
constexpr milliseconds kHold(4);
constexpr int kCallsBetween = 60;
constexpr microseconds kTimeBetween(35'000);

microseconds shareOf(microseconds time, double share) {
  return microseconds(static_cast<long>(static_cast<double>(time.count()) * share));
}

bool handles(pid_t pid, int signal) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("SigCgt:")) {
      return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1) & 1) != 0;
    }
  }
  return false;
}

// How many calls each process makes, in the order in which they began.
using CallCounts = std::vector<std::uint64_t>;

CallCounts countCalls(World& world) {
  CallCounts counts;
  Tracer tracer(
      [&](const Call& call) {
        counts.resize(std::max(counts.size(), static_cast<std::size_t>(call.process) + 1));
        counts[static_cast<std::size_t>(call.process)] = call.serial + 1;
        return Answer();
      },
      true);
  Watch watch(&tracer);
  world.run(watch);
  return counts;
}

class Attack {
 public:
  Attack(const SignalPlan& plan, World& world) : m_plan(plan), m_world(world) {}

  Outcome atTime(microseconds wholeRun) {
    Watch watch;
    const auto first = shareOf(wholeRun, m_plan.when * 1.1);
    m_watch = &watch;
    watch.at(first, [this] { shoot(0); });
    watch.at(first + shareOf(kTimeBetween, m_plan.between), [this] { shoot(1); });
    return m_world.run(watch);
  }

  Outcome atCall(const CallCounts& counts) {
    m_process = m_plan.process != -1
                    ? m_plan.process
                    : static_cast<int>(m_plan.who * static_cast<double>(counts.size()));
    m_serial = static_cast<std::uint64_t>(
        m_plan.when * static_cast<double>(counts.at(static_cast<std::size_t>(m_process))));
    Tracer tracer([this](const Call& call) { return onCall(call); }, true);
    Watch watch(&tracer);
    m_watch = &watch;
    return m_world.run(watch);
  }

  Outcome atTerminal(microseconds wholeRun) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master == -1 || grantpt(master) != 0 || unlockpt(master) != 0) {
      throw std::runtime_error("no terminal can be made");
    }
    const std::string terminal = ptsname(master);
    const Command usual = m_world.command;
    m_world.command.prepare = [terminal] { return dup2(open(terminal.c_str(), O_RDWR), 0) == 0; };
    Watch watch;
    m_watch = &watch;
    watch.at(shareOf(wholeRun, m_plan.when), [this, master] {
      note(m_plan.shots[0]);
      close(master);
    });
    const Outcome outcome = m_world.run(watch);
    m_world.command = usual;
    if (m_harm.signals.empty()) {
      close(master);
    }
    return outcome;
  }

  const Harm& harm() const { return m_harm; }
  const std::string& where() const { return m_where; }

 private:
  Answer onCall(const Call& call) {
    if (!m_harm.signals.empty()) {
      if (call.process == 0 &&
          ++m_callsSince == 1 + static_cast<int>(m_plan.between * kCallsBetween)) {
        shoot(1);
      }
      return {};
    }
    if (call.process != m_process || call.serial != m_serial) {
      return {};
    }
    m_where = " at call " + std::to_string(call.serial) + " of process " +
              std::to_string(call.process) + ", " + describe(call);
    shoot(0);
    return {0, call.process == 0 ? milliseconds(0) : kHold};
  }

  void note(const Shot& shot) {
    const bool toChild = shot.target == Target::Child;
    if (m_harm.signals.empty()) {
      m_harm.handled = handles(m_watch->pid(), shot.signal);
      m_harm.toChild = toChild;
    }
    m_harm.toChild = m_harm.toChild && toChild;
    m_harm.toChildFirst = m_harm.toChildFirst || (toChild && !m_isCanceled);
    m_isCanceled = m_isCanceled || (!toChild && shot.signal != SIGQUIT);
    m_harm.signals.push_back(shot.signal);
  }

  void shoot(std::size_t index) {
    if (index >= m_plan.shots.size()) {
      return;
    }
    const Shot& shot = m_plan.shots[index];
    const pid_t launcher = m_watch->pid();
    const std::vector<pid_t> children = childrenOf(launcher);
    if (shot.target == Target::Child && children.empty()) {
      return;
    }
    // Only the launcher may still be the harness's own copy, which has no group of its own yet.
    const bool hasGroup = getpgid(launcher) == launcher;
    if (shot.target == Target::Group && !hasGroup) {
      return;
    }
    note(shot);
    kill(shot.target == Target::Launcher ? launcher
         : shot.target == Target::Group  ? -launcher
                                         : children.front(),
         shot.signal);
  }

  const SignalPlan& m_plan;
  World& m_world;
  Watch* m_watch = nullptr;
  int m_process = 0;
  std::uint64_t m_serial = 0;
  int m_callsSince = 0;
  Harm m_harm;
  bool m_isCanceled = false;
  std::string m_where;
};

// The worlds of one worker, with what an untouched run there is like.
class Ground {
 public:
  explicit Ground(const std::string& stub) : m_worlds(stub) {}

  Worlds::Place& at(const Scenario& scenario) {
    return m_worlds.at(scenario,
                       [](World& world) { world.command.environment["WORK_MS"] = kWork; });
  }
  const CallCounts& calls(const Scenario& scenario) {
    CallCounts& counts = m_calls[scenario.name];
    if (counts.empty()) {
      counts = countCalls(at(scenario).world);
    }
    return counts;
  }

 private:
  Worlds m_worlds;
  std::map<std::string, CallCounts> m_calls;
};

void perform(const std::string& name, const Options& options, Ground& ground, Report& report) {
  const SignalPlan plan = drawPlan(name, options.seed);
  auto& [world, reference] = ground.at(*plan.scenario);
  Attack attack(plan, world);
  const Outcome outcome = plan.aim == Aim::Call   ? attack.atCall(ground.calls(*plan.scenario))
                          : plan.aim == Aim::Time ? attack.atTime(reference.ending.duration)
                                                  : attack.atTerminal(reference.ending.duration);
  report.add(name, plan.text() + world.normalised(attack.where()),
             judgeSignals(world, attack.harm(), outcome, reference), outcome);
}

std::vector<std::string> namesOf(const Options& options, bool canTrace) {
  if (!options.oneCase.empty()) {
    return {options.oneCase};
  }
  const int count = options.signals != 0 ? options.signals : options.isShort ? 250 : 500;
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) {
    names.push_back("time/" + std::to_string(i));
    if (canTrace) {
      names.push_back("call/" + std::to_string(i));
    }
    if (i % 10 == 0) {
      names.push_back("terminal/" + std::to_string(i));
    }
  }
  for (int i = 0; canTrace && i < kShellPlans; i += options.isShort ? 5 : 1) {
    names.push_back("shell/" + std::to_string(i));
  }
  return names;
}

}  // namespace

bool tortureWithSignals(const Options& options) {
  Report report("kill", options);
  const std::string noTracing = whyNoTracing();
  if (!noTracing.empty()) {
    report.skip("aimed signals: " + noTracing);
  }
  const std::vector<std::string> names = namesOf(options, noTracing.empty());
  report.work(names.size(), [&] {
    auto ground = std::make_shared<Ground>(options.stub);
    return [&, ground](std::size_t i) { perform(names[i], options, *ground, report); };
  });
  return report.finish();
}

}  // namespace torture
