// ChildProcess: the signals that came while a command runs, and the limits of a trial.
#include <algorithm>
#include <csignal>
#include <iterator>
#include <vector>

#include "platform/ChildProcess.h"
#include "platform/CleanupState.h"
#include "platform/PlatformImpl.h"
#include "platform/TrialLimits.h"

namespace {

// For this long a shell without a child counts as about to start its command.
constexpr milliseconds kStartUp{1'000};
// For this long a command may have started too late for a signal that its shell has had.
constexpr milliseconds kNewcomer{20};
constexpr milliseconds kBetweenLooks{5};

bool hasUnheardSignals() {
  return std::any_of(std::begin(g_signals.m_unheard), std::end(g_signals.m_unheard),
                     [](Unheard unheard) { return unheard != Unheard::None; });
}

}  // namespace

Clock::time_point ChildProcess::nextDate() const {
  const bool hasNews = !m_hasEnded && hasUnheardSignals();
  return std::min({m_captures[0].dueAt(), m_captures[1].dueAt(), m_date,
                   hasNews ? Clock::now() + kBetweenLooks : kNever});
}

void ChildProcess::heedSignals() {
  if (m_hasEnded) {
    return;
  }
  if (g_signals.m_isUrgent != 0 && m_ending != Ending::Killed) {
    endNow();
    return;
  }
  for (int i = 0; i < SignalState::kCancelingCount; ++i) {
    if (g_signals.m_unheard[i] != Unheard::None) {
      passOn(SignalState::kSignals[i], g_signals.m_unheard[i]);
    }
  }
}

// A shell that gets a signal before it has started its command starts it all the same, and the
// signal would be lost.
bool ChildProcess::isStartingUp() const {
  return Clock::now() < m_startedAt + kStartUp && CommandTree::isStillOurShell(m_child) &&
         CommandTree::childrenOf(m_child).empty();
}

void ChildProcess::passOn(int signal, volatile Unheard& unheard) {
  const bool isStarting = !m_request.isTrial && isStartingUp();
  if (unheard == Unheard::ToOurGroup && (isStarting || Clock::now() < m_startedAt + kNewcomer)) {
    unheard = Unheard::ToNewcomers;
  }
  m_isCommandAwaited = isStarting;
  if (isStarting) {
    return;
  }
  const Unheard whom = unheard;
  unheard = Unheard::None;
  if (!m_request.isTrial && whom != Unheard::ToOurGroup) {
    tell(signal, whom == Unheard::ToUsAlone || !CommandTree::isStillOurShell(m_child));
  }
}

// True when our shell ended before a signal was passed to its command: it had the signal itself,
// and ended without a command. QUIT ends no shell of ours, and cancels nothing.
bool ChildProcess::hasMissedCommand() const {
  const bool isNew = Clock::now() < m_startedAt + kNewcomer;
  return PlatformImpl::isCanceled() && (m_isCommandAwaited || (isNew && hasUnheardSignals()));
}

// The shell passes nothing on to its command, so both are sent the signal; the shell first, so that
// it starts nothing more. When it dies of that, its list of children is gone.
void ChildProcess::tell(int signal, bool alsoShell) const {
  std::vector<pid_t> commands = CommandTree::childrenOf(m_child);
  if (alsoShell) {
    kill(m_child, signal);
    for (const pid_t newcomer : CommandTree::childrenOf(m_child)) {
      if (std::find(commands.begin(), commands.end(), newcomer) == commands.end()) {
        commands.push_back(newcomer);
      }
    }
  }
  for (const pid_t command : commands) {
    kill(command, signal);
  }
}

void ChildProcess::keepTrialInTime() {
  if (!m_request.isTrial) {
    return;
  }
  const bool isDue = Clock::now() >= m_date;
  if (m_ending == Ending::NotYet && !m_hasEnded && (isDue || PlatformImpl::isCanceled())) {
    m_result.isTimedOut = !PlatformImpl::isCanceled();
    m_ending = Ending::Asked;
    m_date = Clock::now() + kTrialLimits.untilKilled;
    kill(-m_child, SIGTERM);
    kill(-m_child, SIGCONT);
  } else if (isDue) {
    endNow();
  }
}

// Ends the command and what it started; of a trial that has ended by itself, what is left of its
// group and keeps its output open. Does not wait for what even KILL does not end.
void ChildProcess::endNow() {
  const bool endedByItself = m_hasEnded && m_ending == Ending::NotYet;
  if (!endedByItself) {
    m_tree.end(m_child);
  }
  if (m_request.isTrial) {
    kill(-m_child, SIGKILL);
    m_captures[0].close();
    m_captures[1].close();
    m_hasEnded = m_hasEnded || m_ending == Ending::Killed;
    m_date = Clock::now() + kTrialLimits.untilKilled;
  }
  m_ending = Ending::Killed;
}
