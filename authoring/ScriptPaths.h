// ScriptPaths: every way that a script can take, without running it.
//
// A search, a verification and an installation can succeed or fail; what is known only at run time
// can be anything. Variables whose values are known are followed, so that a loop that counts ends.
#ifndef CORVANE_AUTHORING_SCRIPTPATHS_H
#define CORVANE_AUTHORING_SCRIPTPATHS_H

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "authoring/ScriptState.h"
#include "instructions/LabelIndex.h"
#include "instructions/ScriptGrammar.h"
#include "instructions/ScriptSyntax.h"
#include "util/StringDeque.h"

namespace authoring {

// A place that the script can reach, and those that follow it.
struct ScriptStep {
  struct Next {
    std::size_t step;
    bool isFound;  // only when a search or a verification succeeds
  };
  ScriptState state;
  std::vector<Next> next;  // none: the script ends, or ends with an error
};

class ScriptPaths {
 public:
  // Follows the lines, which must outlive it, from the first one.
  explicit ScriptPaths(const StringDeque& lines);

  // False when there are too many ways: then `steps` holds the beginning of some.
  bool isComplete() const { return m_isComplete; }
  // True when a line is no command or jumps to no label: nobody knows where it was to lead.
  bool hasBrokenLines() const { return m_hasBrokenLines; }
  const std::vector<ScriptStep>& steps() const { return m_steps; }

  // The command of the line, or null for labels and what is no command.
  const CommandGrammar* commandAt(long line) const {
    return m_commands[static_cast<std::size_t>(line)];
  }
  // What the first argument of the LAUNCH in that line stands for.
  static KnownText launchedFile(const ScriptState& state, const SString& line);
  // The arguments of the line's command as they are written, as many as there are; empty ones for
  // the name of a jvm file, which may be several words. None for an assignment.
  std::vector<SString> wordsAt(long line) const;
  // What the line sets, its value without quotes; nothing when it is no SET, or a wrong one.
  std::optional<Assignment> assignmentAt(long line) const;
  bool hasLabel(const std::string& name) const {
    return m_labels.find(SString(":" + name)) != LabelIndex::kNone;
  }

 private:
  void follow(std::size_t index);
  void add(std::size_t from, ScriptState state, bool isFound = false);
  void skip(std::size_t from, ScriptState next);
  void jump(std::size_t from, const ScriptState& state, const SString& label);
  void search(std::size_t from, const ScriptState& next, Command command, bool isShown);
  void install(std::size_t from, const ScriptState& next, bool isShown);
  void branch(std::size_t from, const ScriptState& next, const SString& value,
              const SString& label);

  const StringDeque& m_lines;
  const LabelIndex m_labels;
  std::vector<const CommandGrammar*> m_commands;  // of the lines
  std::vector<long> m_labelLines;
  std::vector<ScriptStep> m_steps;
  std::unordered_map<std::string, std::size_t> m_indexOf;  // by the state's key
  std::size_t m_jumps = 0;                                 // from step to step
  bool m_isComplete = true;
  bool m_hasBrokenLines = false;
};

}  // namespace authoring

#endif
