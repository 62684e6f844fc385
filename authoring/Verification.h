// Verification: whether a setup is as it was packed, and what has happened to it.
//
// The stored digests (DigestBlock.h) see every changed byte and tell which file it is in. What
// moves bytes, or takes the end away, is told by its look: an early end, `strip`, a transfer as
// text, something that was appended.
#ifndef CORVANE_AUTHORING_VERIFICATION_H
#define CORVANE_AUTHORING_VERIFICATION_H

#include <string>
#include <vector>

#include "authoring/LauncherFileReader.h"

namespace authoring {

enum class Soundness {
  kSound,
  kDamaged,
  kUnknown  // nothing is wrong by its look, and there are no digests that could tell more
};

struct Verification {
  Soundness soundness = Soundness::kSound;
  std::string summary;              // what the file holds; when it is not damaged
  std::vector<std::string> faults;  // words that follow the file's name; empty when it is sound
};

// Throws AuthoringError when the file cannot be read, or is no launcher file at all.
Verification verifySetup(const std::string& path);

// What is damaged in a launcher file whose index was read, by its digests; nothing without these.
std::vector<std::string> findDamage(const LauncherFile& launcher);

}  // namespace authoring

#endif
