// OutputCapture: one output stream of a child, read through a pipe while the child runs.
//
// What comes is kept within limits, the rest is read and dropped, so that the child never waits for
// a full pipe. A read takes up to 4096 bytes, a chunk. The console's progress advances by 1 for
// each chunk's worth of bytes. Output that comes in drops is collected for up to 10 ms; what there
// is then counts as a chunk.
#ifndef CORVANE_PLATFORM_OUTPUTCAPTURE_H
#define CORVANE_PLATFORM_OUTPUTCAPTURE_H

#include <cstddef>

#include "platform/Clock.h"
#include "platform/KeptText.h"
#include "platform/Pipe.h"

class OutputCapture {
 public:
  // False, with errno set, when the system gives no pipe.
  [[nodiscard]] bool open() { return m_pipe.open(); }
  bool isOpen() const { return m_pipe.readEnd() != -1; }
  int readEnd() const { return m_pipe.readEnd(); }
  int writeEnd() const { return m_pipe.writeEnd(); }
  // For the child: makes `fd` the stream's beginning. False, with errno set, when that fails.
  [[nodiscard]] bool redirect(int fd) const;

  // For the launcher, once the child has its own copy.
  void beginReading() { m_pipe.beginReading(); }
  // Reads what is there into `text`, at most as much as a pipe usually holds.
  void readSome(KeptText& text);
  // The same without that limit, but not what is written meanwhile: it ends also when somebody
  // writes for ever.
  void readRest(KeptText& text);
  // Counts the chunk that has been collected long enough.
  void countDrops(Clock::time_point now);
  // Counts what has been collected, as nothing follows for now.
  void countRest();
  // When the current chunk has been collected for long enough; kNever when there is none.
  Clock::time_point dueAt() const;
  int chunkCount() const { return m_chunks; }
  void close() { m_pipe.closeReadEnd(); }

 private:
  void read(KeptText& text, std::size_t size);
  void collect(std::size_t count);  // bytes that were read
  void countChunk();

  Pipe m_pipe;
  std::size_t m_collected = 0;  // bytes of the chunk that does not count yet
  Clock::time_point m_collectedSince;
  int m_chunks = 0;  // those that count
};

#endif
