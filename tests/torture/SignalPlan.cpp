#include "torture/SignalPlan.h"

#include <csignal>
#include <cstring>
#include <random>
#include <stdexcept>

namespace torture {
namespace {

Aim aimOf(const std::string& kind) {
  if (kind == "time") {
    return Aim::Time;
  }
  if (kind == "call") {
    return Aim::Call;
  }
  if (kind == "terminal") {
    return Aim::Terminal;
  }
  throw std::runtime_error("no such kind of case: " + kind);
}

// Also as likely as others: what differs most from the others.
constexpr const char* kScenarios[] = {"launch",         "launch", "launch-exec", "launch-exec",
                                      "install-launch", "search", "hand-over",   "install",
                                      "verify",         "extract"};
constexpr int kSignals[] = {SIGINT, SIGINT, SIGTERM, SIGTERM, SIGTERM, SIGHUP, SIGHUP, SIGQUIT};
constexpr Target kTargets[] = {Target::Launcher, Target::Launcher, Target::Launcher,
                               Target::Group,    Target::Group,    Target::Child};

class Dice {
 public:
  Dice(unsigned seed, Aim aim, unsigned number) {
    std::seed_seq sequence{seed, static_cast<unsigned>(aim), number};
    m_engine.seed(sequence);
  }
  // From 0 to below 1; the same everywhere.
  double share() { return static_cast<double>(m_engine()) / 4294967296.0; }
  template <class T, std::size_t N>
  T oneOf(const T (&rows)[N]) {
    return rows[static_cast<std::size_t>(share() * N)];
  }

 private:
  std::mt19937 m_engine;
};

// No chance here: each call from the fork to the wizard's first ones, by all who can be aimed at.
SignalPlan shellPlan(int number) {
  constexpr Target kEach[] = {Target::Launcher, Target::Group, Target::Child};
  constexpr int kPlansForCall = 6;
  constexpr int kCalls = kShellPlans / kPlansForCall;  // more than the shell makes
  SignalPlan plan{};
  plan.aim = Aim::Call;
  plan.scenario = findScenario(number % 2 == 0 ? "launch" : "launch-exec");
  plan.shots = {{SIGTERM, kEach[number / 2 % 3]}};
  plan.when = (number / kPlansForCall + 0.5) / kCalls;
  plan.process = 3;  // behind the launcher, the verification's shell and its java
  return plan;
}

SignalPlan chancePlan(const std::string& name, unsigned seed) {
  const std::size_t slash = name.find('/');
  if (slash == std::string::npos) {
    throw std::runtime_error("no such case: " + name);
  }
  const Aim aim = aimOf(name.substr(0, slash));
  Dice dice(seed, aim, static_cast<unsigned>(std::stoul(name.substr(slash + 1))));
  SignalPlan plan{};
  plan.aim = aim;
  plan.scenario = findScenario(dice.oneOf(kScenarios));
  plan.shots.push_back({dice.oneOf(kSignals), dice.oneOf(kTargets)});
  if (aim == Aim::Terminal) {
    plan.shots = {{SIGHUP, Target::Launcher}};
  } else if (dice.share() < 0.3) {
    plan.shots.push_back({dice.oneOf(kSignals), dice.oneOf(kTargets)});
  }
  plan.when = dice.share();
  plan.who = dice.share();
  plan.between = dice.share();
  return plan;
}

}  // namespace

SignalPlan drawPlan(const std::string& name, unsigned seed) {
  const std::string shell = "shell/";
  return name.starts_with(shell) ? shellPlan(std::stoi(name.substr(shell.size())))
                                 : chancePlan(name, seed);
}

std::string SignalPlan::text() const {
  static constexpr const char* kNames[] = {"launcher", "group", "child"};
  std::string text = scenario->name;
  for (const Shot& shot : shots) {
    text += std::string(" ") + sigabbrev_np(shot.signal) + " to " +
            kNames[static_cast<int>(shot.target)];
  }
  return text;
}

}  // namespace torture
