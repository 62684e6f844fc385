// Pipe: the two ends of a pipe, closed at its end. Programs that are started do not inherit them.
#ifndef CORVANE_PLATFORM_PIPE_H
#define CORVANE_PLATFORM_PIPE_H

class Pipe {
 public:
  Pipe() = default;
  ~Pipe();
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  // False, with errno set, when the system gives none.
  [[nodiscard]] bool open();
  int readEnd() const { return m_readEnd; }    // -1: closed
  int writeEnd() const { return m_writeEnd; }  // -1: closed
  void closeReadEnd() { close(m_readEnd); }
  void closeWriteEnd() { close(m_writeEnd); }
  // For one whose other end another process holds: no read waits any more.
  void beginReading();

 private:
  static void close(int& end);

  int m_readEnd = -1;
  int m_writeEnd = -1;
};

#endif
