// SumFile: NAME.sha256, the checksum beside a setup, which `sha256sum -c` reads.
//
// A sum that does not fit is worse than none. So an earlier one is set aside before a new setup
// takes its place, and the new one follows; at no moment a wrong sum stands beside a setup.
#ifndef CORVANE_AUTHORING_SUMFILE_H
#define CORVANE_AUTHORING_SUMFILE_H

#include <string>

#include "authoring/OutputFile.h"

namespace authoring {

std::string sumFileOf(const std::string& path);

// The line for a file of that name, of which `hex` is the digest.
std::string sumLine(const std::string& hex, const std::string& name);

// An earlier file, under a temporary name in its folder; it comes back unless it is discarded.
class SetAside {
 public:
  // Does nothing when there is no file or link at `path`. Throws AuthoringError when it cannot be
  // moved.
  explicit SetAside(std::string path);
  ~SetAside();
  SetAside(const SetAside&) = delete;
  SetAside& operator=(const SetAside&) = delete;

  void discard();

 private:
  std::string m_path;
  std::string m_temporary;  // empty: there is nothing to bring back
};

// Puts `setup` into place, and then `sum`, if there is one. Earlier sums are gone then: the file at
// `sumPath`, where `sum` goes, and that at `linkSumPath`, beside the link by which the setup was
// named. Throws AuthoringError.
void commitWithSum(OutputFile& setup, OutputFile* sum, const std::string& sumPath,
                   const std::string& linkSumPath);

}  // namespace authoring

#endif
