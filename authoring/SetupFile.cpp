#include "authoring/SetupFile.h"

namespace authoring {

Place SetupFile::at(std::string_view tag) const {
  const TagSource* const source = sources.find(tag);
  return {label, source == nullptr ? 0 : source->head.number};
}

Place SetupFile::at(std::string_view tag, long index) const {
  const TagSource* const source = sources.find(tag);
  const auto position = static_cast<std::size_t>(index);
  if (source == nullptr || position >= source->values.size()) {
    return at(tag);
  }
  return {label, source->values[position].number};
}

}  // namespace authoring
