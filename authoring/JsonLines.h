// JsonLines: the lines of a JSON text on which its values stand.
#ifndef CORVANE_AUTHORING_JSONLINES_H
#define CORVANE_AUTHORING_JSONLINES_H

#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace authoring {

class JsonLines {
 public:
  using Json = nlohmann::json;
  using KeyListener = std::function<void(const std::string& path, std::int32_t line)>;

  // Parses a text in which comments may stand, and remembers the lines of what does not lie deep.
  // Throws Json::parse_error. `doubledKey` is called for a key that stands in its object already.
  Json parse(const std::string& text, const KeyListener& doubledKey);

  // The line of a value by its path, as in "files[2].path": of its key, or of its first byte in a
  // list. The line of what holds it when there is no such value; 0 without even that.
  std::int32_t lineOf(std::string path) const;

 private:
  std::map<std::string, std::int32_t> m_lines;
};

}  // namespace authoring

#endif
