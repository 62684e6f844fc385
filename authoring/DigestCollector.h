// DigestCollector: computes the digests of a launcher file while it is written.
//
// SHA-256 is slower than a disk's cache, so larger stretches are computed in the background.
#ifndef CORVANE_AUTHORING_DIGESTCOLLECTOR_H
#define CORVANE_AUTHORING_DIGESTCOLLECTOR_H

#include <future>
#include <string>
#include <vector>

#include "authoring/LauncherFileWriter.h"
#include "authoring/Sha256.h"

namespace authoring {

class DigestCollector : public WriteObserver {
 public:
  // A digest of the whole file costs as much again as those of its pieces.
  explicit DigestCollector(bool wantsWholeFile) : m_wantsWholeFile(wantsWholeFile) {}

  // Throw AuthoringError as Sha256 does.
  void add(std::string_view bytes) override;
  void beginPiece() override;
  void endPiece() override;
  // As encodeDigests (DigestBlock.h) makes it.
  std::string block(std::int64_t offset, std::string_view end) override;

  // Of all bytes that were added; only where it is wanted.
  std::string wholeFile();

 private:
  void wait();

  bool m_wantsWholeFile;
  Sha256 m_file;
  Sha256 m_piece;
  bool m_isInPiece = false;
  std::vector<std::string> m_digests;
  std::string m_bytes;  // being computed; ends after what uses it
  std::future<void> m_fileStep;
  std::future<void> m_pieceStep;
};

}  // namespace authoring

#endif
