// TagFileObserver: is told what TagFile::load reads, for tools that show where a text stands.
//
// The launcher itself has none. Lines count from 1; `line` is the whole line without blanks around
// it and is valid during the call only.
#ifndef CORVANE_TAGFILE_TAGFILEOBSERVER_H
#define CORVANE_TAGFILE_TAGFILEOBSERVER_H

#include <cstdint>
#include <string_view>

class TagFileObserver {
 public:
  virtual ~TagFileObserver() = default;
  // Before anything else is said of the line, and whether or not it parses.
  virtual void onLine(std::int32_t number, std::string_view line) = 0;
  // The line begins the tag `key`; an earlier tag of that name is gone.
  virtual void onTag(std::string_view key) = 0;
  // The line holds the next value of that tag; on the tag's own line, too.
  virtual void onValue() = 0;
  // The line ends the block.
  virtual void onBlockEnd() = 0;
};

#endif
