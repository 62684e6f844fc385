#include "authoring/JsonLines.h"

#include <cstddef>
#include <iterator>
#include <vector>

namespace authoring {
namespace {

// Deeper than any manifest. The paths of a hostile text would grow with the square of its size.
constexpr int kDeepest = 16;

// Counts the lines that the parser has read.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, std::int32_t* line) : m_at(at), m_line(line) {}
  reference operator*() const { return *m_at; }
  CountingIterator& operator++() {
    *m_line += *m_at++ == '\n' ? 1 : 0;
    return *this;
  }
  bool operator==(const CountingIterator& other) const { return m_at == other.m_at; }
  bool operator!=(const CountingIterator& other) const { return m_at != other.m_at; }

 private:
  const char* m_at;
  std::int32_t* m_line;
};

// Follows the parser through objects and lists.
class PathTracker {
 public:
  using Json = JsonLines::Json;
  using Event = Json::parse_event_t;

  // Returns the path of what begins with the event; empty for an end.
  std::string follow(Event event, const Json& parsed) {
    if (event == Event::object_end || event == Event::array_end) {
      m_open.pop_back();
      return "";
    }
    if (event == Event::key) {
      const std::string& object = m_open.back().path;
      m_value = object + (object.empty() ? "" : ".") + parsed.get_ref<const std::string&>();
      return m_value;
    }
    const std::string path = pathOfValue();
    if (event != Event::value) {
      m_open.push_back({path, event == Event::array_start, 0});
    }
    return path;
  }

 private:
  struct Open {
    std::string path;
    bool isList;
    std::size_t next;
  };

  std::string pathOfValue() {
    if (m_open.empty() || !m_open.back().isList) {
      return m_value;
    }
    return m_open.back().path + "[" + std::to_string(m_open.back().next++) + "]";
  }

  std::vector<Open> m_open;
  std::string m_value;  // the path of the last key
};

}  // namespace

JsonLines::Json JsonLines::parse(const std::string& text, const KeyListener& doubledKey) {
  std::int32_t line = 1;
  PathTracker tracker;
  const auto remember = [&](int depth, Json::parse_event_t event, const Json& parsed) {
    if (depth > kDeepest) {
      return true;
    }
    const std::string path = tracker.follow(event, parsed);
    const bool isNew = m_lines.try_emplace(path, line).second;
    if (event == Json::parse_event_t::key && !isNew) {
      doubledKey(path, line);
    }
    return true;
  };
  const char* const begin = text.data();
  return Json::parse(CountingIterator(begin, &line), CountingIterator(begin + text.size(), &line),
                     remember, true, true);
}

std::int32_t JsonLines::lineOf(std::string path) const {
  for (;;) {
    const auto line = m_lines.find(path);
    if (line != m_lines.end()) {
      return line->second;
    }
    if (path.empty()) {
      return 0;
    }
    const std::size_t end = path.find_last_of(".[");
    path.resize(end == std::string::npos ? 0 : end);
  }
}

}  // namespace authoring
