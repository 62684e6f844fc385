// TagSources: where the tags and values of a tag file stand, as the launcher's own parser meets
// them.
//
// Checks of a tag file's values ask SetupFile::at for places; checks of how the file is written
// (a tag given twice, a block that swallows the next tag) walk through `tags`.
#ifndef CORVANE_AUTHORING_TAGSOURCES_H
#define CORVANE_AUTHORING_TAGSOURCES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tagfile/TagFileObserver.h"

namespace authoring {

struct SourceLine {
  std::int32_t number = 0;  // from 1
  std::string text;         // as written, without blanks around it
};

// One definition of a tag, also one that a later one replaces.
struct TagSource {
  std::string name;
  SourceLine head;
  std::vector<SourceLine> values;  // those that count, in their order; `head` when it holds one
  std::int32_t end = 0;            // the line with "/:"; 0: none
};

class TagSources : public TagFileObserver {
 public:
  // In the order of the file.
  const std::vector<TagSource>& tags() const { return m_tags; }
  // The definition that counts, or null.
  const TagSource* find(std::string_view name) const;
  // The last line that was read: where a file stops to parse, except for a block without end.
  const SourceLine& lastLine() const { return m_line; }

  void onLine(std::int32_t number, std::string_view line) override;
  void onTag(std::string_view key) override;
  void onValue() override;
  void onBlockEnd() override;

 private:
  std::vector<TagSource> m_tags;
  std::unordered_map<std::string, std::size_t> m_last;  // of each name, in m_tags
  SourceLine m_line;
};

}  // namespace authoring

#endif
