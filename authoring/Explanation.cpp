#include "authoring/Explanation.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "authoring/RefusalReason.h"
#include "authoring/ShownText.h"
#include "tagfile/TagNames.h"

namespace authoring {
namespace {

using Json = nlohmann::ordered_json;

struct OriginRow {
  const char* shown;
  const char* name;
};

// In the order of Origin.
constexpr std::array<OriginRow, 6> kOrigins = {{{"-cv:javahome", "user-home"},
                                                {tagname::kPlatformHint, "platform-hint"},
                                                {tagname::kPathHint, "path-hint"},
                                                {"PATH", "path"},
                                                {"the scan of the disks", "scan"},
                                                {"VERIFY", "verify"}}};

const OriginRow& rowOf(Origin origin) {
  return kOrigins[static_cast<std::size_t>(origin)];
}

std::string inQuotes(const std::string& text) {
  return "\"" + shownText(text) + "\"";
}

// --- For people ---

std::string originText(const Candidate& candidate) {
  const bool hasName = candidate.origin == Origin::PlatformHint;
  return rowOf(candidate.origin).shown + (hasName ? " " + shownText(candidate.hint) : "");
}

std::string wantedText(const Candidate& candidate, const WantedJava* wanted) {
  std::string properties;
  for (std::size_t i = 0; wanted != nullptr && i < wanted->properties.size(); ++i) {
    properties += i == 0 ? "" : ", ";
    properties += shownText(wanted->properties[i].first + " = " + wanted->properties[i].second);
  }
  const std::string name = candidate.description.empty() ? "" : inQuotes(candidate.description);
  return properties.empty() || name.empty() ? name + properties : name + " (" + properties + ")";
}

std::string gotText(const Candidate& candidate) {
  std::string got;
  for (std::size_t i = 0; i < candidate.answers.size(); ++i) {
    got += i == 0 ? "" : ", ";
    got += shownText(candidate.names[i] + " = " + candidate.answers[i]);
  }
  return got.empty() ? "nothing" : got;
}

std::string lineOf(const Candidate& candidate, const ExplainedLog& log, const LoggedRun& run) {
  const WantedJava* const wanted = wantedOf(candidate, log.wanted);
  const std::string what = wantedText(candidate, wanted);
  return shownText(candidate.program) + ": from " + originText(candidate) +
         (what.empty() ? "" : "; wanted " + what) +
         (candidate.wasAsked ? "; got " + gotText(candidate) : "") + "; " +
         shownText(describeVerdict(candidate, run, wanted), 2 * kLongestShown) + "\n";
}

std::size_t acceptedIn(const LoggedRun& run) {
  return static_cast<std::size_t>(
      std::count_if(run.candidates.begin(), run.candidates.end(),
                    [](const Candidate& each) { return each.verdict == Verdict::Accepted; }));
}

std::string chosenText(const LoggedRun& run) {
  if (!run.chosenHome.empty()) {
    return shownText(run.chosenHome);
  }
  if (run.isSearchForAll && acceptedIn(run) > 0) {
    return "none; the calling program was told of all that were accepted";
  }
  return run.wizards.empty() ? "none"
                             : "none by a search; the setup ran a Java that it had installed or "
                               "that its script names";
}

std::string wizardText(const LoggedRun& run) {
  if (run.wizards.empty()) {
    return "not started";
  }
  const WizardRun& wizard = run.wizards.back();
  if (!wizard.hasEnded) {
    return "started; the log does not tell its end, since it wrote to the terminal itself, still "
           "runs, or was ended together with the setup";
  }
  return "ended; its status is the setup's and is not in the log" +
         (wizard.lastError.empty() ? "" : "; its last error line: " + inQuotes(wizard.lastError));
}

// Which run it is, when the log holds several.
std::string headingOf(const ExplainedLog& log, std::size_t index) {
  const std::size_t count = log.runs.size();
  return shownText(log.label) + ": " +
         (count == 1 ? "1 run"
                     : "run " + std::to_string(index + 1) + " of " + std::to_string(count)) +
         "\n";
}

std::string textOf(const ExplainedLog& log, std::size_t index) {
  const LoggedRun& run = log.runs[index];
  std::string text = headingOf(log, index);
  for (const Candidate& candidate : run.candidates) {
    text += lineOf(candidate, log, run);
  }
  if (run.candidates.empty()) {
    text += "No Java was considered.\n";
  }
  text += "Chosen: " + chosenText(run) + "\nWizard: " + wizardText(run) + "\n";
  for (const std::string& problem : run.problems) {
    text += shownText(problem) + "\n";
  }
  return text +
         (run.isWhole ? "" : "The log ends within a line: it was cut, or is being written.\n");
}

// True when the jvm files of the setup would tell more.
bool needsSetup(const ExplainedLog& log) {
  const auto isRiddle = [](const Candidate& each) { return each.verdict == Verdict::OtherValues; };
  return log.wanted.empty() &&
         std::any_of(log.runs.begin() + static_cast<std::ptrdiff_t>(log.firstShown), log.runs.end(),
                     [&](const LoggedRun& run) {
                       return std::any_of(run.candidates.begin(), run.candidates.end(), isRiddle);
                     });
}

// --- For programs ---

Json wantedAsJson(const WantedJava* wanted) {
  Json properties = wanted == nullptr ? Json() : Json::object();
  for (std::size_t i = 0; wanted != nullptr && i < wanted->properties.size(); ++i) {
    properties[wanted->properties[i].first] = wanted->properties[i].second;
  }
  return properties;
}

Json gotAsJson(const Candidate& candidate) {
  Json properties = candidate.hasAnswered ? Json::object() : Json();
  for (std::size_t i = 0; i < candidate.answers.size(); ++i) {
    properties[candidate.names[i]] = candidate.answers[i];
  }
  return properties;
}

Json textOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json asJson(const Candidate& candidate, const ExplainedLog& log, const LoggedRun& run) {
  const WantedJava* const wanted = wantedOf(candidate, log.wanted);
  Json json;
  json["program"] = candidate.program;
  json["from"] = rowOf(candidate.origin).name;
  json["hint"] = textOrNull(candidate.hint);
  json["description"] = textOrNull(candidate.description);
  json["jvmFile"] = wanted == nullptr ? Json() : Json(wanted->file);
  json["wanted"] = wantedAsJson(wanted);
  json["got"] = gotAsJson(candidate);
  json["verdict"] = verdictName(candidate.verdict);
  json["explanation"] = describeVerdict(candidate, run, wanted);
  return json;
}

Json asJson(const WizardRun& wizard) {
  Json json;
  json["command"] = wizard.command;
  json["ended"] = wizard.hasEnded;
  json["lastError"] = textOrNull(wizard.lastError);
  return json;
}

Json asJson(const LoggedRun& run, std::size_t index, const ExplainedLog& log) {
  Json json;
  json["run"] = index + 1;
  json["candidates"] = Json::array();
  for (const Candidate& candidate : run.candidates) {
    json["candidates"].push_back(asJson(candidate, log, run));
  }
  json["chosenHome"] = textOrNull(run.chosenHome);
  json["chosenFile"] = textOrNull(run.chosenFile);
  json["wizards"] = Json::array();
  for (const WizardRun& wizard : run.wizards) {
    json["wizards"].push_back(asJson(wizard));
  }
  json["problems"] = run.problems;
  json["whole"] = run.isWhole;
  return json;
}

}  // namespace

std::string explainAsText(const ExplainedLog& log) {
  std::string text;
  for (std::size_t i = log.firstShown; i < log.runs.size(); ++i) {
    text += text.empty() ? "" : "\n";
    text += textOf(log, i);
  }
  return text +
         (needsSetup(log) ? "To see what was wanted, add --setup with the setup file.\n" : "");
}

std::string explainAsJson(const ExplainedLog& log) {
  Json json;
  json["log"] = log.label;
  json["runsInLog"] = log.runs.size();
  json["runs"] = Json::array();
  for (std::size_t i = log.firstShown; i < log.runs.size(); ++i) {
    json["runs"].push_back(asJson(log.runs[i], i, log));
  }
  return json.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

}  // namespace authoring
