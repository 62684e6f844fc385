// The fault harness: each system call of whole runs that can fail is made to fail, once or from
// then on.
//
// A case is named SCENARIO/PROCESS/CALL/OCCURRENCE/ERROR: "launch/0/openat/5/EMFILE" is the sixth
// openat(2) of the launcher itself. With a "+" after the error all later calls like it fail, too,
// also in children.
#include <fcntl.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <sstream>
#include <tuple>

#include "torture/Harness.h"
#include "torture/Verdict.h"

namespace torture {
namespace {

struct Fault {
  const Scenario* scenario;
  int process;
  std::string call;
  int occurrence;
  int error;
  bool persists;

  std::string name() const {
    return std::string(scenario->name) + "/" + std::to_string(process) + "/" + call + "/" +
           std::to_string(occurrence) + "/" + errorName(error) + (persists ? "+" : "");
  }
};

// The calls that fail, too, when one of them fails for lack of the same resource.
const std::set<std::string>& callsInWantOf(int error) {
  static const std::set<std::string> kNone;
  static const std::map<int, std::set<std::string>> kWants = {
      {ENOSPC,
       {"write", "writev", "pwrite64", "mkdir", "mkdirat", "rename", "renameat", "copy_file_range",
        "ftruncate"}},
      {EIO,
       {"read", "readv", "pread64", "write", "writev", "getdents64", "fstat", "newfstatat", "stat",
        "lstat", "statx", "unlink", "unlinkat", "rmdir"}},
      {EMFILE, {"open", "openat", "pipe", "pipe2", "dup", "dup2", "dup3", "fcntl", "pidfd_open"}},
      {EACCES,
       {"open", "openat", "mkdir", "mkdirat", "stat", "lstat", "newfstatat", "unlink", "unlinkat",
        "rmdir"}},
      {ENOMEM, {"brk", "mmap", "mremap"}},
      {EAGAIN, {"fork", "vfork", "clone", "clone3"}},
  };
  const auto wants = kWants.find(error);
  return wants == kWants.end() ? kNone : wants->second;
}

// Counts the calls of each kind, from the launcher's first own one on: it begins by looking
// whether its standard descriptors are open.
class Counter {
 public:
  // The occurrence of this call in its process; -1 before the launcher has begun, and for a call
  // that cannot fail.
  int count(const Call& call) {
    m_begun = m_begun || (call.number == SYS_fcntl && call.args[0] == 0 && call.args[1] == F_GETFD);
    const FallibleCall* const row = fallibleCall(call.number);
    if (!m_begun || row == nullptr || !canFail(*row, call.args)) {
      return -1;
    }
    return m_counts[{call.process, call.number}]++;
  }

 private:
  bool m_begun = false;
  std::map<std::pair<int, long>, int> m_counts;
};

bool canGoOn(const std::string& call, int error) {
  return callsInWantOf(error).count(call) != 0;
}

// All the cases of one scenario, from a run that is only looked at.
std::vector<Fault> faultsOf(const Scenario& scenario, World& world) {
  std::vector<Fault> faults;
  Counter counter;
  Tracer tracer([&](const Call& call) {
    const int occurrence = counter.count(call);
    if (occurrence >= 0) {
      const FallibleCall& row = *fallibleCall(call.number);
      for (const int error : errorsOf(row, call.args)) {
        faults.push_back({&scenario, call.process, row.name, occurrence, error, false});
        if (canGoOn(row.name, error)) {
          faults.push_back({&scenario, call.process, row.name, occurrence, error, true});
        }
      }
    }
    return Answer();
  });
  Watch watch(&tracer);
  world.run(watch);
  return faults;
}

// For the short form: each kind of fault once for each process, and some of the rest.
std::vector<Fault> chosen(const std::vector<Fault>& all) {
  constexpr std::size_t kRest = 800;
  const std::size_t stride = std::max<std::size_t>(1, all.size() / kRest);
  std::set<std::tuple<const Scenario*, bool, std::string, int>> seen;
  std::vector<Fault> some;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Fault& fault = all[i];
    const bool isNew =
        !fault.persists &&
        seen.insert({fault.scenario, fault.process != 0, fault.call, fault.error}).second;
    const bool isWide = std::string(fault.scenario->name) == "launch";
    if ((isNew && isWide) || i % stride == 0) {
      some.push_back(fault);
    }
  }
  return some;
}

// Makes one fault happen during a run, and says what it met.
class Injection {
 public:
  explicit Injection(const Fault& fault) : m_fault(fault) {}

  Answer onCall(const Call& call, Tracer& tracer) {
    const int occurrence = m_counter.count(call);
    if (occurrence < 0) {
      return {};
    }
    const FallibleCall& row = *fallibleCall(call.number);
    const bool isIt = call.process == m_fault.process && row.name == m_fault.call &&
                      occurrence == m_fault.occurrence;
    if (!isIt && !(m_hit && callsInWantOf(m_fault.error).count(row.name) != 0)) {
      return {};
    }
    note(call, row);
    if (!m_fault.persists) {
      tracer.letGo();
    }
    return {m_fault.error, {}};
  }

  bool hit() const { return m_hit; }
  const std::string& what() const { return m_what; }
  Harm harm() const {
    static const std::set<std::string> kRemoving = {
        "unlink", "unlinkat", "rmdir", "getdents64", "lstat", "newfstatat", "fstat",
        "open",   "openat",   "statx", "fcntl",      "mmap",  "brk"};
    Harm harm;
    harm.onOutput = m_onOutput;
    harm.onLog = m_fault.persists || m_onLog;
    harm.onRemoval = m_fault.persists || kRemoving.count(m_fault.call) != 0;
    harm.onResult = m_onResult;
    harm.harmless = m_isHarmless;
    return harm;
  }

 private:
  void note(const Call& call, const FallibleCall& row) {
    if (!m_hit) {
      m_what = describe(call);
    }
    m_hit = true;
    const bool writesFail = m_fault.persists && callsInWantOf(m_fault.error).count("write") != 0;
    const bool isOnLog = m_what.find("log.txt") != std::string::npos;
    const bool isWrite = std::string(row.name).find("write") != std::string::npos;
    m_onOutput = m_onOutput || writesFail || (isWrite && (call.args[0] == 1 || call.args[0] == 2));
    m_onLog = m_onLog || isOnLog;
    m_onResult = m_onResult || (isWrite && m_what.find("/temp/cvj") != std::string::npos);
    m_isHarmless = !m_fault.persists && (isOnLog || isBriefWait(row));
  }

  // A signal interrupts a wait; of files a read or a write is never interrupted.
  bool isBriefWait(const FallibleCall& row) const {
    static const std::set<std::string> kWaits = {"wait4", "waitid",   "poll",
                                                 "ppoll", "pselect6", "select"};
    const bool isOnPipe = m_what.starts_with("read pipe:") || m_what.starts_with("write pipe:");
    return m_fault.error == EINTR && (isOnPipe || kWaits.count(row.name) != 0);
  }

  const Fault& m_fault;
  Counter m_counter;
  bool m_hit = false;
  bool m_onOutput = false;
  bool m_onLog = false;
  bool m_onResult = false;
  bool m_isHarmless = false;
  std::string m_what;
};

void perform(const Fault& fault, Worlds& worlds, Report& report) {
  auto& [world, reference] = worlds.at(*fault.scenario);
  Injection injection(fault);
  Tracer* self = nullptr;
  Tracer tracer([&](const Call& call) { return injection.onCall(call, *self); });
  self = &tracer;
  Watch watch(&tracer);
  const Outcome outcome = world.run(watch);
  const std::string what = injection.hit() ? injection.what() : "not met in this run";
  report.add(fault.name(), world.normalised(what),
             judgeFault(world, injection.harm(), outcome, reference), outcome);
}

// A case from its name; empty when it is none.
std::vector<Fault> named(std::string name) {
  std::replace(name.begin(), name.end(), '/', ' ');
  std::istringstream words(name);
  std::string scenario, error;
  Fault fault{};
  words >> scenario >> fault.process >> fault.call >> fault.occurrence >> error;
  fault.persists = error.ends_with("+");
  fault.error = errorNumber(error.substr(0, error.size() - (fault.persists ? 1 : 0)));
  fault.scenario = findScenario(scenario);
  if (fault.scenario == nullptr || fault.error == 0 || fallibleCall(fault.call) == nullptr) {
    return {};
  }
  return {fault};
}

std::vector<Fault> allFaults(const Options& options, Report& report) {
  std::vector<Fault> all;
  const std::string noRoot = whyNoOwnRoot();
  for (const Scenario& scenario : scenarios()) {
    if (scenario.scans && !noRoot.empty()) {
      report.skip(std::string(scenario.name) + ": " + noRoot);
      continue;
    }
    World world(scenario, options.stub);
    const std::vector<Fault> some = faultsOf(scenario, world);
    all.insert(all.end(), some.begin(), some.end());
  }
  return options.isShort ? chosen(all) : all;
}

}  // namespace

bool tortureWithFaults(const Options& options) {
  Report report("fault", options);
  const std::string noTracing = whyNoTracing();
  if (!noTracing.empty()) {
    report.skip(noTracing);
    return report.finish();
  }
  const std::vector<Fault> faults =
      options.oneCase.empty() ? allFaults(options, report) : named(options.oneCase);
  report.work(faults.size(), [&] {
    auto worlds = std::make_shared<Worlds>(options.stub);
    return [&, worlds](std::size_t i) { perform(faults[i], *worlds, report); };
  });
  return report.finish();
}

}  // namespace torture
