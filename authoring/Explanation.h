// Explanation: why each Java was taken or refused, as the log of a setup tells it.
#ifndef CORVANE_AUTHORING_EXPLANATION_H
#define CORVANE_AUTHORING_EXPLANATION_H

#include <string>
#include <utility>
#include <vector>

#include "authoring/SetupLog.h"

namespace authoring {

// What a jvm file of the setup demands.
struct WantedJava {
  std::string file;
  std::string description;
  std::string executable;
  std::vector<std::pair<std::string, std::string>> properties;  // in the order of the jvm file
};

struct ExplainedLog {
  std::string label;  // how messages call the log
  std::vector<LoggedRun> runs;
  std::size_t firstShown = 0;
  std::vector<WantedJava> wanted;  // empty: no setup was named
};

// For people: one line for each Java, then what was chosen and how the wizard ended. Nothing in it
// can steer a terminal.
std::string explainAsText(const ExplainedLog& log);
// For programs, in ASCII: docs/authoring.md, "Explaining a log", tells the form.
std::string explainAsJson(const ExplainedLog& log);

}  // namespace authoring

#endif
