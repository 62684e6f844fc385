// Findings: what `check` has to say of a setup.
//
// Checks only collect; nothing is printed before all have run. A finding says in whole words what
// is wrong, why that matters (what the launcher would do) and what to write instead; `why` and
// `advice` may be empty. The three begin with a small letter and end without a full stop, since
// they are printed in one line (FindingReport.h): "FILE:LINE: error: WHAT; WHY; ADVICE". They may
// hold any bytes of the files, as they are: whoever shows them makes them safe.
//
// An error goes wrong for every user, or for each who comes there; a warning is probably not what
// the author means, but the setup works. What cannot be known before the run is neither.
//
// A check of a text looks like this:
//
//   findings.warning(file.at(row.name, 0), quotedText(value) + " is no number",
//                    "it counts as not given", "write 1 or 0");
#ifndef CORVANE_AUTHORING_FINDINGS_H
#define CORVANE_AUTHORING_FINDINGS_H

#include <cstdint>
#include <string>
#include <vector>

namespace authoring {

// Where something stands. SetupFile (SetupContents.h) tells the places of its tags and values.
struct Place {
  std::string file;       // as the author calls it
  std::int32_t line = 0;  // from 1; 0: the file as a whole
};

enum class Severity { kError, kWarning };

struct Finding {
  Severity severity;
  Place place;
  std::string what;
  std::string why;
  std::string advice;
};

class Findings {
 public:
  void error(Place place, std::string what, std::string why, std::string advice);
  void warning(Place place, std::string what, std::string why, std::string advice);

  void add(const Findings& others);

  // Puts them in the order of `files` (those of other files first), in each in the order of the
  // lines, on each line in the order in which they were found.
  void sort(const std::vector<std::string>& files);
  // From now on all are errors.
  void makeStrict();

  const std::vector<Finding>& all() const { return m_findings; }
  std::size_t count(Severity severity) const;
  bool hasErrors() const { return count(Severity::kError) != 0; }

 private:
  std::vector<Finding> m_findings;
};

}  // namespace authoring

#endif
