// FindingReport: shows findings to people and to programs. docs/authoring.md describes both forms.
#ifndef CORVANE_AUTHORING_FINDINGREPORT_H
#define CORVANE_AUTHORING_FINDINGREPORT_H

#include <cstdio>
#include <string>

#include "authoring/Findings.h"

namespace authoring {

// "FILE:LINE: error: WHAT; WHY; ADVICE" and a newline; without ":LINE" for a file as a whole. With
// `color`, the severity is coloured.
std::string describe(const Finding& finding, bool color);

// A line for each finding, and at the end "SUBJECT: 2 errors, 1 warning"; empty without findings.
std::string reportAsText(const std::string& subject, const Findings& findings, bool color);

// One JSON object, in ASCII.
std::string reportAsJson(const std::string& subject, const Findings& findings);

// True when the stream is a terminal that shows colours and the user has not refused them
// (NO_COLOR, TERM=dumb).
bool wantsColor(std::FILE* stream);

}  // namespace authoring

#endif
