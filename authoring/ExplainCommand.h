// ExplainCommand: the command "explain".
#ifndef CORVANE_AUTHORING_EXPLAINCOMMAND_H
#define CORVANE_AUTHORING_EXPLAINCOMMAND_H

#include <string>

namespace authoring {

struct ExplainOptions {
  std::string log;    // "-": standard input
  std::string setup;  // a launcher file or a manifest; empty: none
  bool allRuns = false;
  bool json = false;
};

// What the command prints. Throws AuthoringError when the log cannot be read or is none, or the
// setup cannot be read or carries no jvm file.
std::string explainLog(const ExplainOptions& options);

}  // namespace authoring

#endif
