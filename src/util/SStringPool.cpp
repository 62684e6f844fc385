#include "util/SStringPool.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// Slabs begin small, since most files are, and grow; a string that would waste much of one is made
// without a slab.
constexpr std::size_t kSmallestSlab = 512;
constexpr std::size_t kLargestSlab = 65536;
constexpr std::size_t kLargestPooled = 4096;

}  // namespace

SStringPool::~SStringPool() {
  SString::release(m_slab);
}

SString SStringPool::make(std::string_view text) {
  if (text.empty() || text.size() > kLargestPooled) {
    return SString(text);
  }
  using Buffer = SString::Buffer;
  void* memory = take(sizeof(Buffer) + text.size() + 1);
  const auto offset = static_cast<char*>(memory) - reinterpret_cast<char*>(m_slab);
  SString string;
  string.m_buffer =
      new (memory) Buffer{SString::kInSlab | 1, static_cast<std::uint32_t>(text.size()),
                          static_cast<std::uint32_t>(offset)};
  std::memcpy(string.m_buffer->bytes(), text.data(), text.size());
  string.m_buffer->bytes()[text.size()] = '\0';
  ++m_slab->owners;
  return string;
}

void* SStringPool::take(std::size_t bytes) {
  constexpr std::size_t kAlignment = alignof(SString::Buffer);
  bytes = (bytes + kAlignment - 1) / kAlignment * kAlignment;
  if (m_slab == nullptr || m_slabSize - m_used < bytes) {
    addSlab(bytes);
  }
  void* memory = reinterpret_cast<char*>(m_slab) + m_used;
  m_used += bytes;
  return memory;
}

void SStringPool::addSlab(std::size_t bytes) {
  const std::size_t size = std::clamp(2 * m_slabSize, kSmallestSlab, kLargestSlab);
  const std::size_t needed = std::max(size, sizeof(SString::Slab) + bytes);
  void* memory = std::malloc(needed);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  SString::release(m_slab);
  m_slab = new (memory) SString::Slab{1};
  m_slabSize = needed;
  m_used = sizeof(SString::Slab);
}
