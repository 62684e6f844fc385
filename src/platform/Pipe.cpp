#include "platform/Pipe.h"

#include <fcntl.h>
#include <unistd.h>

Pipe::~Pipe() {
  closeReadEnd();
  closeWriteEnd();
}

void Pipe::close(int& end) {
  if (end != -1) {
    ::close(end);
    end = -1;
  }
}

bool Pipe::open() {
  int ends[2];
#ifdef __APPLE__
  if (pipe(ends) == -1) {
    return false;
  }
  fcntl(ends[0], F_SETFD, FD_CLOEXEC);
  fcntl(ends[1], F_SETFD, FD_CLOEXEC);
#else
  if (pipe2(ends, O_CLOEXEC) == -1) {
    return false;
  }
#endif
  m_readEnd = ends[0];
  m_writeEnd = ends[1];
  return true;
}

void Pipe::beginReading() {
  closeWriteEnd();
  if (m_readEnd != -1) {
    fcntl(m_readEnd, F_SETFL, fcntl(m_readEnd, F_GETFL) | O_NONBLOCK);
  }
}
