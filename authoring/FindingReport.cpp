#include "authoring/FindingReport.h"

#include <unistd.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string_view>

#include "authoring/Listing.h"
#include "authoring/SafeText.h"

namespace authoring {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kErrorColor = "\x1B[1;31m";
constexpr const char* kWarningColor = "\x1B[1;35m";
constexpr const char* kPlain = "\x1B[m";

const char* nameOf(Severity severity) {
  return severity == Severity::kError ? "error" : "warning";
}

std::string shownSeverity(Severity severity, bool color) {
  const std::string name = std::string(nameOf(severity)) + ":";
  if (!color) {
    return name;
  }
  return (severity == Severity::kError ? kErrorColor : kWarningColor) + name + kPlain;
}

std::string shownPlace(const Place& place) {
  return place.file + (place.line == 0 ? "" : ":" + std::to_string(place.line));
}

Json asJson(const Finding& finding) {
  return {{"severity", nameOf(finding.severity)},
          {"file", finding.place.file},
          {"line", finding.place.line == 0 ? Json() : Json(finding.place.line)},
          {"what", finding.what},
          {"why", finding.why},
          {"advice", finding.advice}};
}

std::int64_t countOfSeverity(const Findings& findings, Severity severity) {
  return static_cast<std::int64_t>(findings.count(severity));
}

}  // namespace

std::string describe(const Finding& finding, bool color) {
  std::string text = safeText(shownPlace(finding.place)) + ": ";
  text += shownSeverity(finding.severity, color);
  const char* separator = " ";
  for (const std::string* const part : {&finding.what, &finding.why, &finding.advice}) {
    if (!part->empty()) {
      text += separator + safeText(*part);
      separator = "; ";
    }
  }
  return text + "\n";
}

std::string reportAsText(const std::string& subject, const Findings& findings, bool color) {
  std::string text;
  for (const Finding& finding : findings.all()) {
    text += describe(finding, color);
  }
  if (text.empty()) {
    return text;
  }
  return text + safeText(subject) + ": " +
         countOf(countOfSeverity(findings, Severity::kError), "error") + ", " +
         countOf(countOfSeverity(findings, Severity::kWarning), "warning") + "\n";
}

std::string reportAsJson(const std::string& subject, const Findings& findings) {
  Json list = Json::array();
  for (const Finding& finding : findings.all()) {
    list.push_back(asJson(finding));
  }
  const Json report = {{"file", subject},
                       {"errors", findings.count(Severity::kError)},
                       {"warnings", findings.count(Severity::kWarning)},
                       {"findings", std::move(list)}};
  return report.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

bool wantsColor(std::FILE* stream) {
  const char* const refusal = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  const bool refused = refusal != nullptr && *refusal != '\0';
  const bool plain = terminal == nullptr || std::string_view(terminal) == "dumb";
  return !refused && !plain && isatty(fileno(stream)) == 1;
}

}  // namespace authoring
