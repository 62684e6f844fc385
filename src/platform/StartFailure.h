// StartFailure: how a child tells why it could not become the program that it was made for.
//
// It stands in memory that both share. That takes no descriptor, so that the parent is told even
// when there are none left. Used by ChildProcess.
#ifndef CORVANE_PLATFORM_STARTFAILURE_H
#define CORVANE_PLATFORM_STARTFAILURE_H

class StartFailure {
 public:
  // What the child was about to do.
  enum class Step { Redirect, Start };

  StartFailure() = default;
  ~StartFailure();
  StartFailure(const StartFailure&) = delete;
  StartFailure& operator=(const StartFailure&) = delete;

  // Before the fork. False, with errno set, when there is no memory.
  [[nodiscard]] bool open();
  // In the child.
  void tell(Step step, int error) const { *m_told = {step, error}; }
  // In the parent, when the child has ended: 0 when there was no failure.
  int error() const { return m_told == nullptr ? 0 : m_told->error; }
  Step step() const { return m_told->step; }

 private:
  struct Told {
    Step step;
    int error;
  };

  Told* m_told = nullptr;
};

#endif
