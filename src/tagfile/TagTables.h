// TagTables: which tags each kind of tag file may hold, and what their values are.
//
// The checker of corvane-pack uses these tables. docs/instructions.md, launch-script.md,
// jvm-file.md and formats.md describe them for authors.
#ifndef CORVANE_TAGFILE_TAGTABLES_H
#define CORVANE_TAGFILE_TAGTABLES_H

#include <span>
#include <string_view>

enum class TagValues { kFirst, kEach };  // which values of a tag count

// What a value is.
enum class TagKind {
  kText,        // anything
  kShownText,   // shown on the console, where letters beyond ASCII are escapes
  kFlag,        // a 16-bit number; anything else counts as not given
  kOne,         // "1", or anything else for no
  kStatement,   // a line of the instruction script
  kTemplate,    // of a command: functions and macros
  kProperty,    // NAME = EXPECTED
  kAssignment,  // NAME=VALUE
  kVariable,    // the name of an environment variable
  kPath,        // of a file or a folder
  kRecorded,    // written by the launcher into the copy of a jvm file, never read by it
};

struct TagRow {
  const char* name;
  TagValues values;
  TagKind kind;
};
using TagTable = std::span<const TagRow>;

extern const TagTable kInstructionTags;
extern const TagTable kLaunchScriptTags;
extern const TagTable kJVMFileTags;  // authors may add tags of their own, for macros
extern const TagTable kJVMMessageTags;
extern const TagTable kInputFileTags;

// The row of that name, or null.
const TagRow* findTag(TagTable table, std::string_view name);

#endif
