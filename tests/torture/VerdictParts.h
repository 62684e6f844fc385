// What the verdicts on failures and on signals share.
#ifndef CORVANE_TESTS_TORTURE_VERDICTPARTS_H
#define CORVANE_TESTS_TORTURE_VERDICTPARTS_H

#include <string>
#include <vector>

#include "torture/World.h"

namespace torture {

bool contains(const std::string& text, const std::string& part);
std::string statusText(int status);
// The wizard, or the launcher that the run was handed over to, has come to its end.
bool isDone(const Outcome& outcome);
// No crash, no hang, no process left.
void judgeAll(const Outcome& outcome, std::vector<std::string>& problems);

}  // namespace torture

#endif
