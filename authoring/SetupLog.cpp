#include "authoring/SetupLog.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "authoring/LogLines.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr std::string_view kRunBegins = "------------------";
constexpr std::string_view kVerifying = "Verifying JVM at ";
constexpr std::string_view kCommand = "Executing launch script command: ";
constexpr std::string_view kMagicLine = "1739021872";
constexpr std::string_view kVerifyClass = " \"Verify\"";
constexpr std::string_view kFound = "Found matching JVM at ";
constexpr std::string_view kWarning = "WARNING: ";
constexpr std::string_view kCanceled = "ERROR: Canceled by the user.";
constexpr std::string_view kError = "ERROR: ";

// What is kept of lists that a foreign program fills.
constexpr std::size_t kMostErrors = 50;
constexpr std::size_t kMostProblems = 1000;

// The text between `begin` and the last `middle`, with what follows that in `rest`; nothing when
// the line is another one.
std::optional<std::string> between(std::string_view line, std::string_view begin,
                                   std::string_view middle, std::string& rest) {
  const std::size_t at = line.rfind(middle);
  if (!line.starts_with(begin) || at == line.npos || at < begin.size()) {
    return std::nullopt;
  }
  rest = line.substr(at + middle.size());
  return std::string(line.substr(begin.size(), at - begin.size()));
}

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words;
  while (true) {
    const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    if (begin == text.size()) {
      return words;
    }
    words.emplace_back(text.substr(begin, end - begin));
    text.remove_prefix(end);
  }
}

// The command of an "Executing" line, without the words about its folder.
std::string commandOf(std::string_view line) {
  line.remove_prefix(kCommand.size());
  const std::size_t end =
      std::min(line.rfind(" in working directory "), line.rfind(" in current working directory"));
  return std::string(line.substr(0, end));
}

class LogParser {
 public:
  void take(const std::string& line) {
    if (m_isAfterRule) {
      m_isAfterRule = false;
      if (rowOf(line) != nullptr || (m_section == Section::None && isProblem(line))) {
        beginRun();
      }
    }
    if (line == kRunBegins) {
      m_isAfterRule = true;
      return;
    }
    if (m_section == Section::None || !takeOutput(line)) {
      takeOwn(line);
    }
  }

  std::vector<LoggedRun> finish(bool isWhole) {
    endTrial(false);
    if (!m_runs.empty()) {
      m_runs.back().isWhole = isWhole;
    }
    return std::move(m_runs);
  }

 private:
  enum class Section { None, Output, Errors };
  using Action = void (LogParser::*)(std::string_view rest);
  struct Row {
    std::string_view begin;
    Action action;
  };
  static const std::array<Row, 19> kRows;

  static const Row* rowOf(std::string_view line) {
    const auto* row = std::find_if(kRows.begin(), kRows.end(), [line](const Row& each) {
      return line.starts_with(each.begin);
    });
    return row == kRows.end() ? nullptr : row;
  }

  static bool isProblem(std::string_view line) {
    return line.starts_with(kWarning) || line.starts_with(kError);
  }

  LoggedRun& run() {
    if (m_runs.empty()) {
      beginRun();
    }
    return m_runs.back();
  }

  void beginRun() {
    if (!m_runs.empty()) {
      endTrial(false);
    }
    m_runs.emplace_back();
    m_section = Section::None;
    m_origin = Origin::Verify;
    m_pending.reset();
    m_isInTrial = false;
    m_isInWizard = false;
  }

  // --- What programs have printed ---

  // False when the line is the launcher's again.
  bool takeOutput(const std::string& line) {
    if (m_section == Section::Output) {
      takeStandardOutput(line);
      return true;
    }
    if (endsErrors(line)) {
      m_section = Section::None;
      return false;
    }
    if (m_isInTrial && trial().errors.size() < kMostErrors && !line.empty()) {
      trial().errors.push_back(line);
    } else if (m_isInWizard && !line.empty() && !isOfStackTrace(line)) {
      run().wizards.back().lastError = line;
    }
    return true;
  }

  // What follows "Exception in thread ..." and "Caused by: ...", which tell more.
  static bool isOfStackTrace(std::string_view line) {
    const std::string_view words = withoutBlanks(line);
    const bool isIndented = words.size() < line.size();
    return isIndented && (words.starts_with("at ") || words.starts_with("... "));
  }

  void takeStandardOutput(const std::string& line) {
    if (line == "ErrOut:") {
      m_section = Section::Errors;
      finishAnswers();
    } else if (m_isInTrial && trial().hasAnswered &&
               trial().answers.size() <= trial().names.size()) {
      trial().answers.push_back(line);
    } else if (m_isInTrial && line == kMagicLine) {
      trial().hasAnswered = true;
    }
  }

  // The log ends the output with a newline of its own.
  void finishAnswers() {
    if (!m_isInTrial) {
      return;
    }
    std::vector<std::string>& answers = trial().answers;
    if (answers.size() <= trial().names.size() && !answers.empty() && answers.back().empty()) {
      answers.pop_back();
    }
    answers.resize(std::min(answers.size(), trial().names.size()));
  }

  // Only what can follow: a wizard prints its own warnings, and may print the lines of a search.
  bool endsErrors(std::string_view line) const {
    if (m_isInTrial) {
      return isMatch(line) || rowOf(line) != nullptr ||
             line.starts_with("ERROR: Invalid magic value: ") ||
             line.starts_with("WARNING: The JVM at ") || line.starts_with("WARNING: Error ") ||
             line == kCanceled;
    }
    return line == "Finding a JVM" || line.starts_with(kVerifying) || line.starts_with(kCommand) ||
           line == kCanceled || (!m_isInWizard && isProblem(line));
  }

  // --- The launcher's own lines ---

  void takeOwn(const std::string& line) {
    if (m_isDescriptionNext) {
      m_isDescriptionNext = false;
      constexpr std::string_view kFor = "   for JVM: ";
      if (line.starts_with(kFor)) {
        trial().description = line.substr(kFor.size());
        return;
      }
    }
    if (m_isInTrial && takeVerdict(line)) {
      return;
    }
    if (const Row* row = rowOf(line)) {
      run();
      (this->*row->action)(std::string_view(line).substr(row->begin.size()));
    } else if (isProblem(line) && !m_runs.empty()) {
      takeProblem(line);
    }
  }

  bool takeVerdict(std::string_view line) {
    Candidate& candidate = trial();
    if (line == candidate.program + " does not exist") {
      conclude(Verdict::NotThere, "");
    } else if (isMatch(line)) {
      conclude(Verdict::Accepted, "");
    } else if (line.starts_with("WARNING: The JVM at ") && line.find(" was ended, ") != line.npos) {
      conclude(Verdict::TimedOut, line.substr(kWarning.size()));
    } else if (line.starts_with("ERROR: Invalid magic value: ")) {
      conclude(m_startError.empty() ? Verdict::NoAnswer : Verdict::NotStarted, m_startError);
    } else if (line == kCanceled) {
      conclude(Verdict::Unfinished, "");
      takeProblem(std::string(line));
    } else if (candidate.wasAsked && line.starts_with(kWarning)) {
      m_startError = line.substr(kWarning.size());
    } else {
      return false;
    }
    return true;
  }

  // Of a match with the home that is being tried, and no other.
  bool isMatch(std::string_view line) const {
    const std::string_view home = line.substr(std::min(kFound.size(), line.size()));
    const Candidate& candidate = m_runs.back().candidates.back();
    return line.starts_with(kFound) && !home.empty() && candidate.hasAnswered &&
           candidate.program.starts_with(home);
  }

  void takeProblem(const std::string& line) {
    std::string rest;
    if (auto program =
            between(line, "WARNING: Not trusted and not tried as root: ", " because of ", rest)) {
      addFind(*program, Verdict::NotTrusted, rest);
      return;
    }
    std::vector<std::string>& problems = run().problems;
    const bool isKnown = std::find(problems.begin(), problems.end(), line) != problems.end();
    if (!isKnown && problems.size() < kMostProblems) {
      problems.push_back(line);
    }
  }

  // --- Candidates ---

  Candidate& trial() { return run().candidates.back(); }

  void conclude(Verdict verdict, std::string_view reason) {
    trial().verdict = verdict;
    trial().reason = reason;
    m_isInTrial = false;
  }

  // A trial that nothing has concluded was refused without a word, unless the log ends before its
  // output does.
  void endTrial(bool goesOn) {
    if (m_section == Section::Output) {
      finishAnswers();
    }
    if (m_isInTrial && trial().wasAsked && (goesOn || m_section == Section::Errors)) {
      conclude(trial().hasAnswered ? Verdict::OtherValues : Verdict::NoAnswer, "");
    }
    m_isInTrial = false;
    if (m_pending && goesOn) {
      m_pending->verdict = Verdict::NoProgram;
      run().candidates.push_back(*m_pending);
    }
    m_pending.reset();
  }

  void addFind(const std::string& program, Verdict verdict, const std::string& reason) {
    endTrial(true);
    Candidate candidate;
    candidate.origin = Origin::Scan;
    candidate.program = program;
    candidate.verdict = verdict;
    candidate.reason = reason;
    run().candidates.push_back(candidate);
  }

  void expect(Origin origin, std::string_view home, std::string hint) {
    endTrial(true);
    m_pending.emplace();
    m_pending->origin = origin;
    m_pending->hint = std::move(hint);
    m_pending->program = home;
    m_pending->description = m_searchedFor;
  }

  // --- The rows ---

  void onIndex(std::string_view rest) {
    run().hasIndex = true;
    run().hasVerifyArchive |= rest == "5";
  }
  void onInputFile(std::string_view) { run().hasInputFile = true; }
  void onFind(std::string_view) {
    endTrial(true);
    run().hasSearched = true;
    m_origin = Origin::Verify;
    m_searchedFor.clear();
  }
  void onFindAll(std::string_view rest) {
    onFind(rest);
    run().isSearchForAll = true;
  }
  void onUserHome(std::string_view) {
    endTrial(true);
    m_origin = Origin::UserHome;
  }
  void onHints(std::string_view) {
    endTrial(true);
    m_origin = Origin::PathHint;
  }
  void onStrategy(std::string_view rest) {
    endTrial(true);
    m_origin = Origin::PathHint;
    m_searchedFor = rest.substr(0, rest.rfind(" using "));
  }
  void onChecking(std::string_view rest) {
    const std::string line = "@" + std::string(rest);
    std::string hint;
    if (auto home = between(line, "@", " which was resolved from platform hint ", hint)) {
      expect(Origin::PlatformHint, *home, hint);
    } else if (auto other =
                   between(line, "@", " which was resolved from the platform JVM path ", hint)) {
      expect(Origin::Path, *other, hint);
    }
  }
  void onPathHint(std::string_view rest) { expect(Origin::PathHint, rest, ""); }
  void onScan(std::string_view) {
    endTrial(true);
    m_origin = Origin::Scan;
    m_searchedFor.clear();
  }
  void onPassedOver(std::string_view rest) {
    std::string mount;
    if (auto program = between(rest, "", " because it lies in the ", mount)) {
      addFind(*program, Verdict::PassedOver, mount);
    }
  }
  void onVerifying(std::string_view rest) {
    std::optional<Candidate> pending = std::move(m_pending);
    m_pending.reset();
    endTrial(true);
    Candidate candidate = pending.value_or(Candidate{});
    candidate.origin = pending ? pending->origin : m_origin;
    candidate.program = rest;
    candidate.description.clear();
    run().candidates.push_back(candidate);
    m_startError.clear();
    m_isInTrial = true;
    m_isInWizard = false;
    m_isDescriptionNext = true;
  }
  void onCommand(std::string_view rest) {
    const std::string command = commandOf(std::string(kCommand) + std::string(rest));
    if (m_isInTrial && !trial().wasAsked) {
      takeVerifyCommand(command);
      return;
    }
    endTrial(true);
    m_isInWizard = true;
    run().wizards.push_back({command, false, ""});
  }
  void takeVerifyCommand(const std::string& command) {
    Candidate& candidate = trial();
    candidate.wasAsked = true;
    const std::size_t name = command.rfind(kVerifyClass);
    candidate.hasVerifyClass = name != command.npos;
    if (candidate.hasVerifyClass) {
      candidate.names = wordsOf(std::string_view(command).substr(name + kVerifyClass.size()));
    }
  }
  void onOutput(std::string_view) {
    m_section = Section::Output;
    if (m_isInWizard && !run().wizards.empty()) {
      run().wizards.back().hasEnded = true;
    }
  }
  void onChosenHome(std::string_view rest) {
    endTrial(true);
    run().chosenHome = rest;
  }
  void onChosenFile(std::string_view rest) { run().chosenFile = rest; }
  void onInvalid(std::string_view) { endTrial(true); }

  std::vector<LoggedRun> m_runs;
  Section m_section = Section::None;
  Origin m_origin = Origin::Verify;
  std::optional<Candidate> m_pending;
  std::string m_searchedFor;
  std::string m_startError;
  bool m_isInTrial = false;
  bool m_isInWizard = false;
  bool m_isDescriptionNext = false;
  bool m_isAfterRule = false;
};

// The launcher's lines by their beginnings. What a program prints may begin so, too.
const std::array<LogParser::Row, 19> LogParser::kRows = {{
    {"file type: ", &LogParser::onIndex},
    {"Loading input file ", &LogParser::onInputFile},
    {"Finding a JVM", &LogParser::onFind},
    {"Finding all matching JVMs", &LogParser::onFindAll},
    {"Checking user specified Java home directory => ", &LogParser::onUserHome},
    {"Initiating JVM search based on hints...", &LogParser::onHints},
    {"Searching for ", &LogParser::onStrategy},
    {"Checking JVM at ", &LogParser::onChecking},
    {"Checking path hint ", &LogParser::onPathHint},
    {"Beginning exhaustive search", &LogParser::onScan},
    {"Processing unverified matches.", &LogParser::onScan},
    {"Not tried: ", &LogParser::onPassedOver},
    {kVerifying, &LogParser::onVerifying},
    {kCommand, &LogParser::onCommand},
    {"Output from the launch script execution", &LogParser::onOutput},
    {"Matching JVM home is ", &LogParser::onChosenHome},
    {"After VERIFY, the jvm home is ", &LogParser::onChosenHome},
    {"Matching JVM file is ", &LogParser::onChosenFile},
    {"In VERIFY, the jvm is invalid.", &LogParser::onInvalid},
}};

}  // namespace

std::vector<LoggedRun> readSetupLog(std::FILE* file) {
  LogLines lines(file);
  LogParser parser;
  std::string line;
  bool isWhole = true;
  while (lines.next(line)) {
    parser.take(line);
    isWhole = lines.hasEnd();
  }
  return parser.finish(isWhole);
}

}  // namespace authoring
