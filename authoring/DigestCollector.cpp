#include "authoring/DigestCollector.h"

#include "authoring/DigestBlock.h"

namespace authoring {
namespace {

constexpr std::size_t kWorthAThread = 65536;

}  // namespace

void DigestCollector::add(std::string_view bytes) {
  wait();
  m_bytes.assign(bytes);
  // Where no thread can be started, `async` computes within `wait`.
  const auto how = bytes.size() < kWorthAThread ? std::launch::deferred
                                                : std::launch::async | std::launch::deferred;
  if (m_wantsWholeFile) {
    m_fileStep = std::async(how, [this] { m_file.add(m_bytes); });
  }
  if (m_isInPiece) {
    m_pieceStep = std::async(how, [this] { m_piece.add(m_bytes); });
  }
}

void DigestCollector::beginPiece() {
  wait();
  m_isInPiece = true;
}

void DigestCollector::endPiece() {
  wait();
  m_digests.push_back(m_piece.finish());
  m_isInPiece = false;
}

std::string DigestCollector::block(std::int64_t offset, std::string_view end) {
  return encodeDigests(offset, m_digests, end);
}

std::string DigestCollector::wholeFile() {
  wait();
  return m_file.finish();
}

void DigestCollector::wait() {
  for (std::future<void>* const step : {&m_fileStep, &m_pieceStep}) {
    if (step->valid()) {
      step->get();
    }
  }
}

}  // namespace authoring
