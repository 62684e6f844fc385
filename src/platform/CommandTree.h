// CommandTree: the processes that a command has started, as far as the system lists them.
//
// On Linux these are all descendants: while a tree exists, a process that loses its parent becomes
// the launcher's child (docs/architecture.md, "Child processes"). Elsewhere, and without /proc,
// only the shell itself is known.
#ifndef CORVANE_PLATFORM_COMMANDTREE_H
#define CORVANE_PLATFORM_COMMANDTREE_H

#include <sys/types.h>

#include <vector>

class CommandTree {
 public:
  // Construct it before the command starts: children that exist then do not belong to it.
  CommandTree();
  ~CommandTree();
  CommandTree(const CommandTree&) = delete;
  CommandTree& operator=(const CommandTree&) = delete;

  // Ends the shell and all that it has started, by KILL, and waits a moment until they are gone.
  // The shell itself is left to be waited for.
  void end(pid_t shell) const;

  // The children of the process; empty also where the system does not list them.
  static std::vector<pid_t> childrenOf(pid_t process);
  // True for a shell that has begun its command, and has not become another program by "exec".
  static bool isStillOurShell(pid_t process);

 private:
  bool endOnce(pid_t shell) const;

  std::vector<pid_t> m_strangers;
};

#endif
