#include "platform/StartFailure.h"

#include <sys/mman.h>

StartFailure::~StartFailure() {
  if (m_told != nullptr) {
    munmap(m_told, sizeof *m_told);
  }
}

bool StartFailure::open() {
  void* const memory =
      mmap(nullptr, sizeof *m_told, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    return false;
  }
  m_told = static_cast<Told*>(memory);
  return true;
}
