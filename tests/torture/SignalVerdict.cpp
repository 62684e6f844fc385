// What holds after signals. A cancel before the wizard has begun ends the launcher by that signal;
// of a wizard that has begun the status is told, 128 + n where a signal ended it.
#include <algorithm>
#include <csignal>
#include <map>

#include "torture/Verdict.h"
#include "torture/VerdictParts.h"

namespace torture {
namespace {

constexpr char kCanceled[] = "Canceled by the user.\n";

int countOf(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) {
    ++count;
  }
  return count;
}

class Judge {
 public:
  Judge(const World& world, const Harm& harm, const Outcome& outcome, const Outcome& reference)
      : m_world(world), m_harm(harm), m_outcome(outcome), m_reference(reference) {}

  std::vector<std::string> problems() {
    judgeAll(m_outcome, m_problems);
    if (!m_outcome.ending.hung) {
      judgeLeft();
      judgeStatus();
      judgeText();
    }
    return m_problems;
  }

 private:
  Kind kind() const { return m_world.scenario().kind; }
  int status() const { return m_outcome.ending.status; }
  bool wasSent(int signal) const {
    return std::find(m_harm.signals.begin(), m_harm.signals.end(), signal) != m_harm.signals.end();
  }
  bool isSingle() const { return m_harm.signals.size() == 1; }
  bool hasBegun() const { return m_outcome.did("begun wizard") || m_outcome.did("begun inner"); }
  bool diedBySignal() const { return status() < 0 && wasSent(-status()); }

  // Between the hand-over and the other launcher's first word nobody can remove what it is.
  bool isInnerAlone() const {
    const auto& left = m_outcome.left;
    return diedBySignal() && left.size() == 2 && left[1] == left[0] + "inner" && !hasBegun();
  }

  void judgeLeft() {
    if (!m_outcome.left.empty() && !isInnerAlone()) {
      m_problems.push_back("left behind: " + m_outcome.left.front());
    }
  }

  void judgeStatus() {
    if (status() < 0 && !wasSent(-status())) {
      m_problems.push_back("crash: " + statusText(status()));
    } else if (status() < 0 && m_harm.toChild) {
      m_problems.push_back("ended by a child's signal: " + statusText(status()));
    } else if (kind() == Kind::Launch) {
      judgeLaunch();
    } else if (status() == 0) {
      judgeResult();
    } else if (status() > 0) {
      judgeFailure();
    }
  }

  void judgeLaunch() {
    if (status() == 0 && !isDone(m_outcome)) {
      m_problems.push_back("false success");
    }
    if (status() > 0) {
      judgeFailure();
    }
    // The status is the wizard's, unless a second signal ended everything. The launcher that the
    // run was handed over to is the process itself.
    if (status() < 0 && isSingle() && m_outcome.did("begun wizard") && !isDone(m_outcome)) {
      m_problems.push_back("the wizard's end is not told: " + statusText(status()));
    }
  }

  void judgeFailure() {
    const bool isOfSignal =
        (status() > 128 && wasSent(status() - 128)) || (status() == 128 + SIGKILL && !isSingle());
    if (isOfSignal && kind() == Kind::Launch) {
      if (m_outcome.did("done wizard") && isSingle() && wasSent(SIGQUIT)) {
        m_problems.push_back("a wizard that went on after QUIT is not waited for");
      }
      return;
    }
    // A candidate or an installer that a signal ended is a failure like any other. QUIT is not for
    // the launcher while a child runs.
    if (m_harm.toChildFirst || wasSent(SIGQUIT)) {
      return;
    }
    m_problems.push_back("canceled with " + statusText(status()));
  }

  // What an installer makes beside its "jvm" is its own affair.
  static std::map<std::string, std::string> productsOf(const Outcome& outcome) {
    std::map<std::string, std::string> products = outcome.products;
    products.erase("dest/bin");
    return products;
  }

  // A signal that came too late to change anything, or one that went to a child alone.
  void judgeResult() {
    const bool isWhole = m_outcome.out == m_reference.out &&
                         m_outcome.handedOut == m_reference.handedOut &&
                         productsOf(m_outcome) == productsOf(m_reference);
    const bool isRefused = m_harm.toChildFirst && m_outcome.out.ends_with("0\n");
    if (!isWhole && !isRefused) {
      m_problems.push_back("false success");
    }
  }

  void judgeText() {
    const int count = countOf(m_outcome.out, kCanceled) + countOf(m_outcome.err, kCanceled);
    const bool isSilent = kind() == Kind::Search || kind() == Kind::Verify || hasBegun();
    if (count > 1) {
      m_problems.push_back("\"Canceled by the user.\" is shown more than once");
    }
    if (count == 0 && !isSilent && m_harm.handled && isSingle() && diedBySignal()) {
      m_problems.push_back("\"Canceled by the user.\" is not shown");
    }
    if (kind() == Kind::Search && diedBySignal() && m_harm.handled && isSingle() &&
        !contains(m_outcome.out, "0\n") && m_outcome.out != m_reference.out) {
      m_problems.push_back("a canceled search does not print \"0\"");
    }
  }

  const World& m_world;
  const Harm& m_harm;
  const Outcome& m_outcome;
  const Outcome& m_reference;
  std::vector<std::string> m_problems;
};

}  // namespace

std::vector<std::string> judgeSignals(const World& world, const Harm& harm, const Outcome& outcome,
                                      const Outcome& reference) {
  return Judge(world, harm, outcome, reference).problems();
}

}  // namespace torture
