// MemoryReserve: a little memory that is kept for the end of a run that got no more.
//
// While the object lives, the first allocation that fails gives the reserve back to the system and
// throws std::bad_alloc as usual: so there is enough for the clean-up and a line in the log.
#ifndef CORVANE_UTIL_MEMORYRESERVE_H
#define CORVANE_UTIL_MEMORYRESERVE_H

class MemoryReserve {
 public:
  MemoryReserve();
  ~MemoryReserve();
  MemoryReserve(const MemoryReserve&) = delete;
  MemoryReserve& operator=(const MemoryReserve&) = delete;
};

#endif
