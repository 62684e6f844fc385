// OutputFolder: a folder that appears whole or not at all.
//
// Its files are written into a hidden folder beside it (or in it, when it is there and empty) and
// put into place by `commit`. Without `commit`, also when a signal ends the program, nothing stays.
#ifndef CORVANE_AUTHORING_OUTPUTFOLDER_H
#define CORVANE_AUTHORING_OUTPUTFOLDER_H

#include <string>
#include <vector>

#include "authoring/DeferredSignals.h"

namespace authoring {

class OutputFolder {
 public:
  // Makes the folders above, too. Throws AuthoringError when something stands there that is no
  // empty folder, or nothing can be made there.
  explicit OutputFolder(std::string path);
  ~OutputFolder();
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;

  // Where its files are written until the commit.
  const std::string& staging() const { return m_staging; }
  // Throws AuthoringError.
  void commit();

 private:
  void makeParents();
  void moveFiles();
  void removeParts();
  [[noreturn]] void fail(int error);

  DeferredSignals m_signals;  // ends last
  std::string m_path;
  std::string m_staging;
  std::vector<std::string> m_parents;  // that we made
  bool m_isThere;
};

}  // namespace authoring

#endif
