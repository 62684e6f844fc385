// DeleteFullDir: deletes a directory with everything in it.
//
// It never follows a link, never enters what is mounted in the tree, is not cancellable, and knows
// no limit of depth. First go the files of each directory, from the root inward, in the order in
// which the system lists them; the directories of one directory in the reverse of that order. Then
// go the directories, from the last to the first. What cannot be deleted stays, and the log says
// why. The console's progress advances as in FileNavigator.
#ifndef CORVANE_PLATFORM_DELETEFULLDIR_H
#define CORVANE_PLATFORM_DELETEFULLDIR_H

#include <vector>

#include "platform/DirectoryTree.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class DeleteFullDir {
 public:
  explicit DeleteFullDir(const SString& directory) : m_tree(directory) {}

  void process();

 private:
  struct Pending {
    long parent;
    SString name;
  };

  void deleteFiles(long directory);
  void deleteFile(long directory, const char* name);
  void deleteDirectory(long directory);
  void fail(const SString& path, int error);
  bool isProtected(long directory) const;

  DirectoryTree m_tree;
  std::vector<Pending> m_pending;  // used as a stack
  std::vector<int> m_listErrors;   // of each directory: why not all in it was seen, or 0
  StringDeque m_failed;            // paths whose deletion failed
  unsigned long m_fileCount = 0;
};

#endif
