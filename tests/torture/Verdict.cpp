// What holds after every case, and after failures of the system.
#include "torture/Verdict.h"

#include <algorithm>

#include "torture/VerdictParts.h"

namespace torture {

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string statusText(int status) {
  return status < 0 ? "signal " + std::to_string(-status) : "status " + std::to_string(status);
}

bool isDone(const Outcome& outcome) {
  return outcome.did("done wizard") || outcome.did("done inner");
}

void judgeAll(const Outcome& outcome, std::vector<std::string>& problems) {
  if (outcome.ending.hung) {
    problems.push_back("hangs");
  }
  for (const char* text : {"terminate called", "Sanitizer", "Assertion", "*** "}) {
    if (contains(outcome.err, text)) {
      problems.push_back("crash: " + outcome.err.substr(0, outcome.err.find('\n')));
    }
  }
  for (const std::string& process : outcome.ending.left) {
    if (!outcome.ending.hung) {
      problems.push_back("process left: " + process);
    }
  }
}

namespace {

// Only what a run without failures does not show, too.
bool isTold(const Outcome& outcome, const Outcome& reference) {
  const bool shown =
      outcome.out.size() > 0 && outcome.out != reference.out && outcome.out != "Sample\n";
  return shown || !outcome.err.empty() || contains(outcome.log, "ERROR");
}

void judgeStatus(const World& world, const Harm& harm, const Outcome& outcome,
                 const Outcome& reference, std::vector<std::string>& problems) {
  const int status = outcome.ending.status;
  if (status < 0) {
    problems.push_back("crash: " + statusText(status));
    return;
  }
  const bool canBeTold = !(harm.onOutput && harm.onLog);
  if (status != 0 && canBeTold && !isTold(outcome, reference)) {
    problems.push_back(statusText(status) + " without a text");
  }
  if (harm.harmless && status != 0) {
    problems.push_back("not survived: " + statusText(status));
  }
  if (world.scenario().kind == Kind::Launch) {
    if (status == 0 && !isDone(outcome)) {
      problems.push_back("false success");
    }
  } else if (status != 0 && status != 255) {
    problems.push_back("strange " + statusText(status));
  }
}

std::string lastLine(const std::string& text) {
  const std::size_t end = text.find_last_not_of('\n');
  const std::size_t begin = text.find_last_of(".\n", end);  // behind dots of progress, too
  return text.substr(begin == std::string::npos ? 0 : begin + 1);
}

bool saysWhy(const std::string& log) {
  return contains(log, "ERROR") || contains(log, "WARNING") || contains(log, " does not exist");
}

// A handed out name is one of a whole file; "0" or nothing else may be said.
void judgeSearch(const Harm& harm, const Outcome& outcome, const Outcome& reference,
                 std::vector<std::string>& problems) {
  if (outcome.handedOut && outcome.handedOut != reference.handedOut) {
    problems.push_back("a jvm file that is not whole is handed out");
  }
  const bool found = outcome.handedOut.has_value();
  if (outcome.ending.status != 0 || found) {
    return;
  }
  if (!outcome.out.ends_with("0\n")) {
    problems.push_back("false success: neither a result nor \"0\"");
  } else if (harm.onResult && !harm.onLog && !saysWhy(outcome.log)) {
    problems.push_back("the log does not say why nothing is found");
  }
}

// Of "input.tag" the log alone tells; what the installer makes beside its "jvm" is its own affair.
bool mayLack(const std::string& product, const Harm& harm, const Outcome& outcome) {
  return (product == "current/input.tag" && (harm.onLog || contains(outcome.log, "WARNING"))) ||
         product == "dest/bin";
}

void judgeProducts(Kind kind, const Harm& harm, const Outcome& outcome, const Outcome& reference,
                   std::vector<std::string>& problems) {
  if (outcome.ending.status != 0) {
    return;
  }
  for (const auto& [name, bytes] : reference.products) {
    const auto product = outcome.products.find(name);
    const bool isRight = product != outcome.products.end() && product->second == bytes;
    if (!isRight && !mayLack(name, harm, outcome)) {
      problems.push_back("false success: " + name + " is not whole");
    }
  }
  if (kind != Kind::Extract && lastLine(outcome.out) != lastLine(reference.out)) {
    problems.push_back("false success: the output is not whole");
  }
}

void judgeTold(const World& world, const Harm& harm, const Outcome& outcome,
               const Outcome& reference, std::vector<std::string>& problems) {
  switch (world.scenario().kind) {
    case Kind::Search:
      judgeSearch(harm, outcome, reference, problems);
      break;
    case Kind::Extract:
    case Kind::Install:
    case Kind::Version:
      judgeProducts(world.scenario().kind, harm, outcome, reference, problems);
      break;
    case Kind::Verify:
      if (outcome.ending.status == 0 && !outcome.out.ends_with("1\n") &&
          !outcome.out.ends_with("0\n")) {
        problems.push_back("false success: neither \"1\" nor \"0\"");
      }
      break;
    case Kind::Launch:
      break;
  }
}

void judgeLeft(const Harm& harm, const Outcome& outcome, std::vector<std::string>& problems) {
  const bool isExcused =
      harm.onRemoval && (harm.onLog || contains(outcome.log, "Could not delete"));
  if (!outcome.left.empty() && !isExcused) {
    problems.push_back("left behind: " + outcome.left.front());
  }
}

}  // namespace

std::vector<std::string> judgeFault(const World& world, const Harm& harm, const Outcome& outcome,
                                    const Outcome& reference) {
  std::vector<std::string> problems;
  judgeAll(outcome, problems);
  if (!outcome.ending.hung) {
    judgeStatus(world, harm, outcome, reference, problems);
    judgeTold(world, harm, outcome, reference, problems);
    judgeLeft(harm, outcome, problems);
  }
  return problems;
}

}  // namespace torture
