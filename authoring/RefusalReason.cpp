#include "authoring/RefusalReason.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr std::string_view kAnythingFollows = "...";

// In the order of Verdict.
constexpr std::array kVerdictNames = {"accepted",    "other-values", "no-answer",  "timed-out",
                                      "not-started", "not-there",    "no-program", "not-trusted",
                                      "passed-over", "unfinished"};

// What a Java says when the verify class does not run, and what that means.
struct SayingRow {
  std::string_view said;
  std::string_view means;
};

const SayingRow kSayings[] = {
    {"UnsupportedClassVersionError", "it is too old for the verify class"},
    {"Unrecognized option",
     "it does not know an option that it was given; look at JAVA_TOOL_OPTIONS, "
     "_JAVA_OPTIONS, JDK_JAVA_OPTIONS and at REQ_JAVA_ARGS"},
    {"Could not create the Java Virtual Machine",
     "it did not start; look at JAVA_TOOL_OPTIONS, _JAVA_OPTIONS and JDK_JAVA_OPTIONS"},
    {"Error occurred during initialization of VM",
     "it did not start; look at JAVA_TOOL_OPTIONS, _JAVA_OPTIONS and JDK_JAVA_OPTIONS"},
    {"find or load main class",
     "it did not find the verify class; try LC_ALL=C.UTF-8 or another -cv:tempdir, and look "
     "whether "
     "CLASSPATH in the jvm file ends with a blank"},
    {"ClassNotFoundException",
     "it did not find the verify class; try LC_ALL=C.UTF-8 or another -cv:tempdir"},
    {"Exec format error", "the program is for another processor"},
    {"ermission denied", "the program may not be run"},
    {"noexec", "the program may not be run"},
};

bool matches(const std::string& answer, const std::string& expected) {
  if (!std::string_view(expected).ends_with(kAnythingFollows)) {
    return answer == expected;
  }
  const std::size_t length = expected.size() - kAnythingFollows.size();
  return answer.compare(0, length, expected, 0, length) == 0;
}

// The first value that differs, as words; empty when none does.
std::string differenceOf(const Candidate& candidate, const WantedJava& wanted) {
  const std::size_t count = std::min(candidate.answers.size(), wanted.properties.size());
  for (std::size_t i = 0; i < count; ++i) {
    const auto& [name, expected] = wanted.properties[i];
    if (!matches(candidate.answers[i], expected)) {
      std::string text = name + " is \"" + candidate.answers[i];
      return text.append("\" and not \"").append(expected).append("\"");
    }
  }
  return "";
}

std::string whyOtherValues(const Candidate& candidate, const WantedJava* wanted) {
  if (wanted == nullptr) {
    return "it answered, but a value is not the one that is wanted";
  }
  const std::string difference = differenceOf(candidate, *wanted);
  return difference.empty()
             ? "its values are right in the setup named; was the log made by another?"
             : difference;
}

std::string whyNoAnswer(const Candidate& candidate, const LoggedRun& run) {
  const bool lacksArchive = run.hasIndex && !run.hasVerifyArchive && !run.hasInputFile;
  if (!candidate.hasVerifyClass && lacksArchive) {
    return "the setup carries no verify archive, so no Java can answer";
  }
  for (const SayingRow& row : kSayings) {
    for (const std::string& line : candidate.errors) {
      if (line.find(row.said) != std::string::npos) {
        return std::string(row.means) + " (it said \"" + std::string(withoutBlanks(line)) + "\")";
      }
    }
  }
  return candidate.errors.empty() ? "it gave no answer, and said nothing"
                                  : "it gave no answer, and said \"" + candidate.errors[0] + "\"";
}

// What a program printed may imitate the launcher's lines.
std::string describeAcceptance(const Candidate& candidate, const WantedJava* wanted) {
  const std::string difference = wanted == nullptr ? "" : differenceOf(candidate, *wanted);
  return difference.empty() ? "accepted"
                            : "accepted, as the log says, but " + difference +
                                  "; the log is of another setup, or this program imitates it";
}

}  // namespace

const WantedJava* wantedOf(const Candidate& candidate, const std::vector<WantedJava>& wanted) {
  const auto fits = [&candidate](const WantedJava& each) {
    const auto hasName = [](const auto& property, const std::string& name) {
      return property.first == name;
    };
    return each.description == candidate.description &&
           candidate.program.ends_with(each.executable) &&
           (candidate.names.empty() ||
            std::equal(each.properties.begin(), each.properties.end(), candidate.names.begin(),
                       candidate.names.end(), hasName));
  };
  const auto found = std::find_if(wanted.begin(), wanted.end(), fits);
  return found == wanted.end() ? nullptr : &*found;
}

const char* verdictName(Verdict verdict) {
  return kVerdictNames[static_cast<std::size_t>(verdict)];
}

std::string describeVerdict(const Candidate& candidate, const LoggedRun& run,
                            const WantedJava* wanted) {
  switch (candidate.verdict) {
    case Verdict::Accepted:
      return describeAcceptance(candidate, wanted);
    case Verdict::OtherValues:
      return "refused: " + whyOtherValues(candidate, wanted);
    case Verdict::NoAnswer:
      return "refused: " + whyNoAnswer(candidate, run);
    case Verdict::TimedOut:
      return "refused: it hung or waited for somebody, and was ended";
    case Verdict::NotStarted:
      return "refused: it could not be started (" + candidate.reason + ")";
    case Verdict::NotThere:
      return "no such program";
    case Verdict::NoProgram:
      return "not tried: its jvm file has no JVM_EXE";
    case Verdict::NotTrusted:
      return "not tried as root: " + candidate.reason +
             "; name its home with -cv:javahome if you trust it";
    case Verdict::PassedOver:
      return "not tried: it lies in the " + candidate.reason + "; name its home with -cv:javahome";
    case Verdict::Unfinished:
      break;
  }
  return "the log ends before the verdict";
}

}  // namespace authoring
