#include "util/SString.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace {

// Leaves room for the header and the closing zero byte, also on 32-bit machines.
constexpr std::size_t kLargestCapacity = std::numeric_limits<std::uint32_t>::max() - 64;

// The capacity to allocate: the preferred one where it is allowed, at least what is needed.
std::size_t withRoomToGrow(std::size_t needed, std::size_t preferred) {
  return std::max(needed, std::min(preferred, kLargestCapacity));
}

}  // namespace

SString::Buffer* SString::allocate(std::size_t capacity) {
  if (capacity > kLargestCapacity) {
    throw std::bad_alloc();
  }
  void* memory = std::malloc(sizeof(Buffer) + capacity + 1);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  auto* buffer = new (memory) Buffer{1, 0, static_cast<std::uint32_t>(capacity)};
  buffer->bytes()[0] = '\0';
  return buffer;
}

void SString::release(Buffer* buffer) noexcept {
  if (buffer != nullptr && --buffer->owners == 0) {
    std::free(buffer);
  }
}

SString::SString(const char* text)
    : SString(text == nullptr ? std::string_view() : std::string_view(text)) {}

SString::SString(const char* bytes, std::size_t size) : SString(std::string_view(bytes, size)) {}

SString::SString(std::string_view text) {
  if (!text.empty()) {
    m_buffer = allocate(text.size());
    std::memcpy(m_buffer->bytes(), text.data(), text.size());
    setSize(text.size());
  }
}

SString::SString(const SString& other) noexcept : m_buffer(other.m_buffer) {
  if (m_buffer != nullptr) {
    ++m_buffer->owners;
  }
}

SString& SString::operator=(const SString& other) noexcept {
  SString copy(other);
  std::swap(m_buffer, copy.m_buffer);
  return *this;
}

SString& SString::operator=(SString&& other) noexcept {
  std::swap(m_buffer, other.m_buffer);
  return *this;
}

bool SString::isWritable(std::size_t size) const {
  return m_buffer != nullptr && m_buffer->owners == 1 && m_buffer->capacity >= size;
}

void SString::setSize(std::size_t size) {
  m_buffer->size = static_cast<std::uint32_t>(size);
  m_buffer->bytes()[size] = '\0';
}

void SString::reserve(std::size_t capacity) {
  if (isWritable(capacity)) {
    return;
  }
  Buffer* fresh = allocate(std::max(capacity, size()));
  std::memcpy(fresh->bytes(), c_str(), size());
  fresh->size = static_cast<std::uint32_t>(size());
  fresh->bytes()[fresh->size] = '\0';
  release(m_buffer);
  m_buffer = fresh;
}

SString& SString::assign(std::string_view text) {
  return replace(0, npos, text);
}

SString& SString::append(std::string_view text) {
  return replace(size(), 0, text);
}

SString& SString::append(std::size_t count, char byte) {
  const std::size_t oldSize = size();
  if (count > kLargestCapacity) {
    throw std::bad_alloc();
  }
  if (count > 0) {
    if (!isWritable(oldSize + count)) {
      reserve(withRoomToGrow(oldSize + count, 2 * oldSize));
    }
    std::memset(m_buffer->bytes() + oldSize, byte, count);
    setSize(oldSize + count);
  }
  return *this;
}

SString& SString::insert(std::size_t pos, std::string_view text) {
  return replace(pos, 0, text);
}

SString& SString::erase(std::size_t pos, std::size_t count) {
  return replace(pos, count, {});
}

SString& SString::replace(std::size_t pos, std::size_t count, std::string_view text) {
  const std::size_t oldSize = size();
  pos = std::min(pos, oldSize);
  count = std::min(count, oldSize - pos);
  if (count == 0 && text.empty()) {
    return *this;
  }
  const std::size_t newSize = oldSize - count + text.size();
  const char* end = c_str() + oldSize;
  const bool isOwnPart = text.data() >= c_str() && text.data() <= end && !text.empty();
  const SString keptAlive = isOwnPart ? *this : SString();  // makes us write into a new buffer
  if (!isWritable(newSize)) {
    reserve(newSize > oldSize ? withRoomToGrow(newSize, oldSize + oldSize / 2) : newSize);
  }
  char* target = m_buffer->bytes() + pos;
  std::memmove(target + text.size(), target + count, oldSize - pos - count);
  if (!text.empty()) {
    std::memcpy(target, text.data(), text.size());
  }
  setSize(newSize);
  return *this;
}

std::size_t SString::find(std::string_view text, std::size_t from) const {
  return view().find(text, from);
}

std::size_t SString::find(char byte, std::size_t from) const {
  return view().find(byte, from);
}

std::size_t SString::rfind(std::string_view text, std::size_t from) const {
  return view().rfind(text, from);
}

std::size_t SString::rfind(char byte, std::size_t from) const {
  return view().rfind(byte, from);
}

std::size_t SString::find_first_of(std::string_view set, std::size_t from) const {
  return view().find_first_of(set, from);
}

std::size_t SString::find_last_of(std::string_view set, std::size_t from) const {
  return view().find_last_of(set, from);
}

std::size_t SString::find_first_not_of(std::string_view set, std::size_t from) const {
  return view().find_first_not_of(set, from);
}

std::size_t SString::find_last_not_of(std::string_view set, std::size_t from) const {
  return view().find_last_not_of(set, from);
}

SString SString::substr(std::size_t pos, std::size_t count) const {
  if (pos >= size()) {
    return {};
  }
  return pos == 0 && count >= size() ? *this : SString(view().substr(pos, count));
}

int SString::compare(std::string_view other) const {
  return view().compare(other);
}

SString operator+(const SString& a, std::string_view b) {
  SString sum;
  sum.reserve(a.size() + b.size());
  return sum.append(a.view()).append(b);
}

SString operator+(const SString& a, const SString& b) {
  return a + b.view();
}

SString operator+(const SString& a, const char* b) {
  return a + std::string_view(b);
}

SString operator+(const char* a, const SString& b) {
  return SString(a) + b.view();
}

SString operator+(const SString& a, char b) {
  return a + std::string_view(&b, 1);
}
