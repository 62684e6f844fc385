#include "platform/OutputCapture.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "platform/PlatformImpl.h"

namespace {

constexpr std::size_t kChunkSize = 4096;
// What is read from one stream before the other has its turn: as much as a pipe holds.
constexpr std::size_t kBytesPerTurn = 16 * kChunkSize;
constexpr milliseconds kDropsTogether{10};

}  // namespace

bool OutputCapture::redirect(int fd) const {
  return dup2(m_pipe.writeEnd(), fd) != -1;
}

void OutputCapture::readSome(KeptText& text) {
  read(text, kBytesPerTurn);
}

void OutputCapture::readRest(KeptText& text) {
  int waiting = 0;
  if (isOpen() && ioctl(readEnd(), FIONREAD, &waiting) == 0 && waiting > 0) {
    read(text, static_cast<std::size_t>(waiting));
  }
}

void OutputCapture::read(KeptText& text, std::size_t size) {
  char chunk[kChunkSize];
  for (std::size_t done = 0; done < size && isOpen();) {
    const ssize_t result = ::read(readEnd(), chunk, kChunkSize);
    if (result == -1 && errno == EINTR) {
      continue;
    }
    if (result == -1 && errno == EAGAIN) {
      return;
    }
    if (result <= 0) {
      close();
      countRest();
      return;
    }
    const auto count = static_cast<std::size_t>(result);
    // QUIRK(chunk-ends-at-zero-byte): what follows a zero byte in one read is dropped.
    text.append(std::string_view(chunk, strnlen(chunk, count)));
    collect(count);
    done += count;
  }
}

void OutputCapture::collect(std::size_t count) {
  const bool isNew = m_collected == 0;
  m_collected += count;
  const bool isFull = m_collected >= kChunkSize;
  if (isFull) {
    m_collected -= kChunkSize;
    countChunk();
  }
  if (isNew || isFull) {
    m_collectedSince = Clock::now();
  }
}

void OutputCapture::countDrops(Clock::time_point now) {
  if (dueAt() <= now) {
    countRest();
  }
}

void OutputCapture::countRest() {
  if (m_collected > 0) {
    m_collected = 0;
    countChunk();
  }
}

void OutputCapture::countChunk() {
  ++m_chunks;
  PlatformImpl::advanceUIProgress(1);
}

Clock::time_point OutputCapture::dueAt() const {
  return m_collected == 0 ? kNever : m_collectedSince + kDropsTogether;
}
