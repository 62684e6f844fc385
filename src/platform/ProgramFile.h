// ProgramFile: which program a path leads to, to tell whether two starts are of the same one.
//
// The path behind all links counts beside the file's own marks: two hard links, or two mounts, of
// one file are two programs, since a program may look for its parts beside itself.
#ifndef CORVANE_PLATFORM_PROGRAMFILE_H
#define CORVANE_PLATFORM_PROGRAMFILE_H

#include <sys/types.h>

#include <ctime>
#include <optional>

#include "util/SString.h"

struct ProgramFile {
  enum class Kind {
    Script,          // what another program reads: a shell's script, a Java class
    Binary,          // what the processor runs: ELF, Mach-O
    OpenJDKLauncher  // the program "java" of OpenJDK and its descendants, a binary that knows
                     // itself by its file alone, never by the name that it was started by
  };

  // Empty when nothing, or no ordinary file, is there.
  static std::optional<ProgramFile> at(const SString& path);
  // The absolute path behind all links; empty when nothing is there.
  static SString withoutLinks(const SString& path);

  // False after each change that the system tells of.
  bool operator==(const ProgramFile& other) const;
  // Reads the file. What cannot be read is taken for a script.
  Kind kind() const;

  SString path;  // absolute, without links
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  timespec modified = {};
  timespec changed = {};
};

#endif
