// Trees of files for the tests of the walks.
#ifndef CORVANE_TESTS_SUPPORT_TREES_H
#define CORVANE_TESTS_SUPPORT_TREES_H

#include <string>
#include <vector>

namespace test {

// Makes one entry below `folder`, and the directories above it: "a/" a directory, "l>t" a link to
// t, "p|" a named pipe, "s=" a socket, anything else an empty file.
void makeEntry(const std::string& folder, std::string entry);
// `paths` without `folder` in front, sorted. Fails the test when one lies elsewhere.
std::vector<std::string> below(const std::string& folder, std::vector<std::string> paths);

}  // namespace test

#endif
