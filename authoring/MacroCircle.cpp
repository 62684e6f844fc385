#include "authoring/MacroCircle.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tagfile/TagNames.h"

namespace authoring {
namespace {

// What a search puts into its command.
const std::vector<std::string> kSearchTags = {tagname::kJVMExe, tagname::kReqJavaArgs,
                                              tagname::kClasspath, tagname::kClasspathSeparator,
                                              tagname::kJVMClasspath};

constexpr const char* kAdvice = "take one of the names out";

class MacroCircles {
 public:
  MacroCircles(const SetupFile& file, Findings& findings) : m_file(file), m_findings(findings) {
    for (const SString& name : file.tagFile->getNames()) {
      // The launcher replaces the home of a Java by its own text, in which no macro is meant.
      if (name != tagname::kJVMHome && name != tagname::kJVMFile) {
        m_names[std::string(name.view())] =
            namesIn(file.tagFile->getTagValue(name.c_str(), 0), kTagMark);
      }
    }
    removeHarmless();
  }

  // Reports the circle that each of the tags leads to, once.
  void report(const std::vector<std::string>& tags, const std::string& why) {
    for (const std::string& tag : tags) {
      const std::vector<std::string> circle = circleFrom(tag);
      if (!circle.empty()) {
        m_findings.error(m_file.at(circle.front(), 0), describe(circle), why, kAdvice);
      }
    }
  }

  // Those that nothing leads to.
  void reportOthers() {
    for (const auto& [tag, names] : m_names) {
      const std::vector<std::string> circle = circleFrom(tag);
      if (!circle.empty()) {
        m_findings.warning(m_file.at(circle.front(), 0), describe(circle),
                           "a command that names it never ends", kAdvice);
      }
    }
  }

 private:
  // Leaves the tags that lead to a circle: again and again takes out those that name nothing.
  void removeHarmless() {
    std::map<std::string, std::vector<std::string>> namers;
    std::map<std::string, std::size_t> counts;
    std::vector<std::string> harmless;
    for (const auto& [tag, names] : m_names) {
      for (const std::string& name : names) {
        if (m_names.count(name) != 0) {
          namers[name].push_back(tag);
          ++counts[tag];
        }
      }
      if (counts[tag] == 0) {
        harmless.push_back(tag);
      }
    }
    while (!harmless.empty()) {
      const std::string tag = harmless.back();
      harmless.pop_back();
      m_names.erase(tag);
      for (const std::string& namer : namers[tag]) {
        if (--counts[namer] == 0) {
          harmless.push_back(namer);
        }
      }
    }
  }

  // The first tag that `tag` names and that leads to a circle.
  std::string next(const std::string& tag) const {
    for (const std::string& name : m_names.at(tag)) {
      if (m_names.count(name) != 0) {
        return name;
      }
    }
    return "";
  }

  // The tags of the circle that the tag leads to, beginning with its least name; empty when it
  // leads to none, or to one that was reported.
  std::vector<std::string> circleFrom(std::string tag) {
    if (m_names.count(tag) == 0) {
      return {};
    }
    std::set<std::string> way;
    for (; way.count(tag) == 0; tag = next(tag)) {
      if (!m_seen.insert(tag).second) {
        return {};
      }
      way.insert(tag);
    }
    std::vector<std::string> circle{tag};
    for (std::string other = next(tag); other != tag; other = next(other)) {
      circle.push_back(other);
    }
    std::rotate(circle.begin(), std::min_element(circle.begin(), circle.end()), circle.end());
    return circle;
  }

  static std::string describe(const std::vector<std::string>& circle) {
    if (circle.size() == 1) {
      return circle.front() + " holds itself";
    }
    std::string text = circle.front() + " holds itself, by way of ";
    for (std::size_t i = 1; i < circle.size(); ++i) {
      text += (i > 1 ? ", " : "") + circle[i];
    }
    return text;
  }

  const SetupFile& m_file;
  Findings& m_findings;
  std::map<std::string, std::vector<std::string>> m_names;  // of each tag that leads to a circle
  std::set<std::string> m_seen;
};

}  // namespace

void checkMacroCircles(const SetupFile& file, const CommandModel& command, Findings& findings) {
  MacroCircles circles(file, findings);
  circles.report(kSearchTags, "a search never ends once it tries a Java with this file");
  circles.report(command.tags, "the launch never ends");
  circles.reportOthers();
}

}  // namespace authoring
