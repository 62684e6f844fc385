// What is wrong with the translations. Every problem is counted and printed as one line on standard
// error, so that a translator sees all of them at once.
#ifndef CORVANE_TOOLS_CATALOGUE_PROBLEMS_H
#define CORVANE_TOOLS_CATALOGUE_PROBLEMS_H

#include <cstdio>
#include <string>

namespace catalogue {

class Problems {
 public:
  // "WHERE: WHAT"; `where` names the file, and what is known of the locale, the entry or the line.
  void add(const std::string& where, const std::string& what) {
    std::fprintf(stderr, "%s: %s\n", where.c_str(), what.c_str());
    ++m_count;
  }
  int count() const { return m_count; }

 private:
  int m_count = 0;
};

}  // namespace catalogue

#endif
