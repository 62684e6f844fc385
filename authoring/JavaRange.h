// JavaRange: which Javas a setup takes, as its author writes it: "17+", "8..17" or "21".
#ifndef CORVANE_AUTHORING_JAVARANGE_H
#define CORVANE_AUTHORING_JAVARANGE_H

#include <string>
#include <vector>

namespace authoring {

struct JavaRange {
  static constexpr int kOldest = 8;
  static constexpr int kNoEnd = 0;

  int first = kOldest;
  int last = kNoEnd;  // kNoEnd: each later one, too

  bool isOpen() const { return last == kNoEnd; }
  // The newest first. Not for an open range.
  std::vector<int> versions() const;
  // For users: "Java 17 or later", "Java 8 to 17", "Java 21".
  std::string inWords() const;
};

// Throws AuthoringError, with what may be written.
JavaRange parseJavaRange(const std::string& text);

// What a Java says of itself as java.specification.version.
std::string specificationVersion(int version);

}  // namespace authoring

#endif
