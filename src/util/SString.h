// SString: the byte string of the launcher.
//
// A value type. Copies share one buffer until one of them is changed (copy on write), so passing
// strings about costs a pointer and a counter. The program is single-threaded: the counter is a
// plain number, and a string must not be shared between threads.
//
// Bytes are bytes: no encoding is assumed and a zero byte may stand anywhere. Text handed to C
// (c_str) ends for C at the first zero byte. Positions are byte positions from 0; "not found" is
// npos, the largest unsigned value. Where a position lies past the end the operations do what is
// natural for text (nothing is found, nothing is erased, the substring is empty) and never throw;
// only a lack of memory and a string of 4 GB throw (std::bad_alloc).
#ifndef CORVANE_UTIL_SSTRING_H
#define CORVANE_UTIL_SSTRING_H

#include <cstddef>
#include <cstdint>
#include <string_view>

class SString {
 public:
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  constexpr SString() noexcept = default;
  SString(const char* text);  // up to its zero byte; a null pointer reads as empty
  SString(const char* bytes, std::size_t size);  // exactly `size` bytes
  explicit SString(std::string_view text);
  SString(const SString& other) noexcept;
  SString(SString&& other) noexcept : m_buffer(other.m_buffer) { other.m_buffer = nullptr; }
  SString& operator=(const SString& other) noexcept;
  SString& operator=(SString&& other) noexcept;
  ~SString() {
    if (m_buffer != nullptr) {
      release(m_buffer);
    }
  }

  std::size_t size() const { return m_buffer == nullptr ? 0 : m_buffer->size; }
  std::size_t length() const { return size(); }
  bool empty() const { return size() == 0; }
  // Always zero-terminated, valid until this string changes.
  const char* c_str() const { return m_buffer == nullptr ? "" : m_buffer->bytes(); }
  std::string_view view() const { return {c_str(), size()}; }
  operator std::string_view() const { return view(); }
  // The byte at `pos`; a zero byte at or past the end.
  char operator[](std::size_t pos) const { return pos < size() ? m_buffer->bytes()[pos] : '\0'; }
  char back() const { return (*this)[size() - 1]; }

  // Changing operations. Each returns this string, so that calls can be chained. The argument may
  // be a part of this string itself.
  SString& assign(std::string_view text);
  SString& append(std::string_view text);
  SString& append(std::size_t count, char byte);
  SString& insert(std::size_t pos, std::string_view text);
  SString& erase(std::size_t pos = 0, std::size_t count = npos);
  SString& replace(std::size_t pos, std::size_t count, std::string_view text);
  SString& operator+=(std::string_view text) { return append(text); }
  SString& operator+=(char byte) { return append(1, byte); }
  void clear() { erase(); }
  // Makes room for `capacity` bytes in all, so that appending up to there allocates nothing.
  void reserve(std::size_t capacity);

  // Searches; all return npos when nothing is found.
  std::size_t find(std::string_view text, std::size_t from = 0) const;
  std::size_t find(char byte, std::size_t from = 0) const;
  std::size_t rfind(std::string_view text, std::size_t from = npos) const;
  std::size_t rfind(char byte, std::size_t from = npos) const;
  std::size_t find_first_of(std::string_view set, std::size_t from = 0) const;
  std::size_t find_last_of(std::string_view set, std::size_t from = npos) const;
  std::size_t find_first_not_of(std::string_view set, std::size_t from = 0) const;
  std::size_t find_last_not_of(std::string_view set, std::size_t from = npos) const;

  // The `count` bytes from `pos`, or as many as there are.
  SString substr(std::size_t pos, std::size_t count = npos) const;
  // Byte order as of unsigned characters: negative, zero or positive.
  int compare(std::string_view other) const;
  bool startsWith(std::string_view prefix) const { return view().starts_with(prefix); }
  bool endsWith(std::string_view suffix) const { return view().ends_with(suffix); }

  friend bool operator==(const SString& a, const SString& b) { return a.view() == b.view(); }
  friend bool operator==(const SString& a, const char* b) { return a.view() == b; }
  friend bool operator<(const SString& a, const SString& b) { return a.view() < b.view(); }

 private:
  // The shared buffer: this header, then `capacity` bytes and a zero byte. The header is small
  // since a long script is millions of short strings.
  struct Buffer {
    std::uint32_t owners;
    std::uint32_t size;
    std::uint32_t capacity;
    char* bytes() { return reinterpret_cast<char*>(this + 1); }
    const char* bytes() const { return reinterpret_cast<const char*>(this + 1); }
  };

  static Buffer* allocate(std::size_t capacity);
  static void release(Buffer* buffer) noexcept;
  bool isWritable(std::size_t size) const;
  void setSize(std::size_t size);

  Buffer* m_buffer = nullptr;  // null: the empty string
};

SString operator+(const SString& a, const SString& b);
SString operator+(const SString& a, std::string_view b);
SString operator+(const SString& a, const char* b);
SString operator+(const char* a, const SString& b);
SString operator+(const SString& a, char b);

#endif
