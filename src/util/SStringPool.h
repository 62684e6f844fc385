// SStringPool: makes many strings that come and go together, such as the values of a file.
//
// Their bytes lie side by side in slabs, so that a short string costs neither an allocation of its
// own nor the room that one wastes. They are ordinary strings: a change gives them a buffer of
// their own. A slab lives as long as any string in it, or a copy of one, and may outlive the pool;
// whoever keeps a single string for long keeps up to 64 KB.
#ifndef CORVANE_UTIL_SSTRINGPOOL_H
#define CORVANE_UTIL_SSTRINGPOOL_H

#include <cstddef>
#include <string_view>

#include "util/SString.h"

class SStringPool {
 public:
  SStringPool() = default;
  ~SStringPool();
  SStringPool(const SStringPool&) = delete;
  SStringPool& operator=(const SStringPool&) = delete;

  SString make(std::string_view text);

 private:
  void* take(std::size_t bytes);
  void addSlab(std::size_t bytes);

  SString::Slab* m_slab = nullptr;  // the one being filled, of which the pool is an owner
  std::size_t m_slabSize = 0;
  std::size_t m_used = 0;  // bytes of the slab, its header included
};

#endif
