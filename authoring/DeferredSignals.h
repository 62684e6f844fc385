// DeferredSignals: signals that would end the program wait while there is something half-made.
//
// Whoever makes something under a temporary name holds one meanwhile; long loops call
// `throwIfCame`. When the last one ends, the signal that came ends the program as it would have.
#ifndef CORVANE_AUTHORING_DEFERREDSIGNALS_H
#define CORVANE_AUTHORING_DEFERREDSIGNALS_H

#include <csignal>
#include <vector>

namespace authoring {

class DeferredSignals {
 public:
  // A signal that is ignored stays so.
  DeferredSignals();
  ~DeferredSignals();
  DeferredSignals(const DeferredSignals&) = delete;
  DeferredSignals& operator=(const DeferredSignals&) = delete;

  // Throws AuthoringError, which nobody gets to read: the program ends by the signal before.
  static void throwIfCame();

 private:
  struct Old {
    int signal;
    struct sigaction action;
  };
  std::vector<Old> m_old;
};

}  // namespace authoring

#endif
