#include "tagfile/StreamUtils.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr std::size_t kSmallestBlock = 4096;
constexpr std::size_t kLargestBlock = 65536;

bool isDirectory(std::FILE* file) {
  struct stat status;
  return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

void loadBytes(std::FILE* file, unsigned char* bytes, int count, const char* errorText) {
  if (getBytes(file, bytes, count) < count) {
    throw LauncherException(errorText);
  }
}

std::string_view withoutCarriageReturns(char* line, std::size_t size) {
  return {line, static_cast<std::size_t>(std::remove(line, line + size, '\r') - line)};
}

void appendLine(std::FILE* file, SString& line) {
  for (int byte = std::fgetc(file); byte != '\n' && byte != EOF; byte = std::fgetc(file)) {
    if (byte != '\r') {
      line += static_cast<char>(byte);
    }
  }
}

}  // namespace

FilePtr openFile(const SString& path, const char* mode) {
  const std::string closeOnExec = std::string(mode) + "e";
  FilePtr file(std::fopen(path.c_str(), closeOnExec.c_str()));
  if (file != nullptr && isDirectory(file.get())) {
    file.reset();
    errno = EISDIR;
  }
  return file;
}

bool isAtEnd(std::FILE* file) {
  return std::feof(file) != 0 || std::ferror(file) != 0;
}

int getBytes(std::FILE* file, unsigned char* buffer, int count) {
  int reads = 0;
  while (reads < count && !isAtEnd(file)) {
    // QUIRK(end-is-a-byte): the read that meets the end is counted and stored (EOF as a byte is
    // 0xFF), so a number at the very end of a file may lack its last byte.
    buffer[reads++] = static_cast<unsigned char>(std::fgetc(file));
  }
  return reads;
}

std::int32_t loadLongValue(std::FILE* file, const char* errorText) {
  unsigned char bytes[4];
  loadBytes(file, bytes, sizeof bytes, errorText);
  return convertToLong(bytes);
}

std::int16_t loadShortValue(std::FILE* file, const char* errorText) {
  unsigned char bytes[2];
  loadBytes(file, bytes, sizeof bytes, errorText);
  return convertToShort(bytes);
}

std::int32_t convertToLong(const unsigned char* bytes) {
  std::uint32_t number = 0;
  for (int i = 0; i < 4; ++i) {
    number = number << 8 | bytes[i];
  }
  return static_cast<std::int32_t>(number);
}

std::int16_t convertToShort(const unsigned char* bytes) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]));
}

std::string_view LineReader::next() {
  std::size_t searched = 0;
  for (;;) {
    const std::string_view rest(m_buffer.data() + m_begin, m_end - m_begin);
    const std::size_t newline = rest.find('\n', searched);
    if (newline != std::string_view::npos) {
      return take(newline, 1);
    }
    searched = rest.size();
    if (!readMore()) {
      m_atEnd = true;
      return take(rest.size(), 0);
    }
  }
}

std::string_view LineReader::take(std::size_t size, std::size_t lineEnd) {
  char* line = m_buffer.data() + m_begin;
  m_begin += size + lineEnd;
  m_position += static_cast<std::int64_t>(size + lineEnd);
  return m_hasCarriageReturns ? withoutCarriageReturns(line, size) : std::string_view(line, size);
}

// Blocks begin small, since most tag files are, and grow; a line that fills the buffer doubles it.
bool LineReader::readMore() {
  if (m_begin > 0) {
    std::copy(m_buffer.begin() + static_cast<std::ptrdiff_t>(m_begin),
              m_buffer.begin() + static_cast<std::ptrdiff_t>(m_end), m_buffer.begin());
  }
  m_end -= m_begin;
  m_begin = 0;
  if (m_buffer.size() < kLargestBlock || m_end == m_buffer.size()) {
    m_buffer.resize(std::max(kSmallestBlock, 2 * m_buffer.size()));
  }
  char* block = m_buffer.data() + m_end;
  const std::size_t bytes = std::fread(block, 1, m_buffer.size() - m_end, m_file);
  m_hasCarriageReturns = m_hasCarriageReturns || std::memchr(block, '\r', bytes) != nullptr;
  m_end += bytes;
  return bytes > 0;
}

void readLineFromStream(std::FILE* file, SString& line) {
  if (file != nullptr) {
    appendLine(file, line);
  }
  trim(line);
}
