#include "util/MemoryReserve.h"

#include <cstdlib>
#include <new>

namespace {

// Small enough for the heap: what is given back there needs no call of the system to be used again.
constexpr std::size_t kSize = std::size_t{96} * 1024;

constinit void* g_reserve = nullptr;

void giveUp() {
  std::free(g_reserve);
  g_reserve = nullptr;
  std::set_new_handler(nullptr);
  throw std::bad_alloc();
}

}  // namespace

MemoryReserve::MemoryReserve() {
  g_reserve = std::malloc(kSize);
  std::set_new_handler(giveUp);
}

MemoryReserve::~MemoryReserve() {
  std::set_new_handler(nullptr);
  std::free(g_reserve);
  g_reserve = nullptr;
}
