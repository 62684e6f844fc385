// DeleteFullDir: the walk that deletes a directory with everything in it.
//
// It never follows a link and is not cancellable. What cannot be deleted is logged and stays.
#ifndef CORVANE_PLATFORM_DELETEFULLDIR_H
#define CORVANE_PLATFORM_DELETEFULLDIR_H

#include "platform/FileNavigator.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class DeleteFullDir : public FileNavigator {
 public:
  DeleteFullDir() : FileNavigator(false, Visited::Record) {}

  bool process(const SString& directory) override;
  bool processFile(const SString& path) override;

 private:
  void deleteDirectory(long position);
  bool isProtected(long position) const;

  StringDeque m_failed;  // paths whose deletion failed
};

#endif
