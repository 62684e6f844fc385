// Stream helpers: lines and big-endian numbers from C streams.
//
// A read error ends what is read here like the end of the file; nothing loops on it. Who must tell
// the two apart asks ferror.
#ifndef CORVANE_TAGFILE_STREAMUTILS_H
#define CORVANE_TAGFILE_STREAMUTILS_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>
#include <vector>

#include "util/SString.h"

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

// Opens `path` with the given fopen mode, close-on-exec. Null, with errno set, when it does not
// open. A directory opened for reading counts as a file that does not open (EISDIR).
[[nodiscard]] FilePtr openFile(const SString& path, const char* mode);

// True when nothing more can be read: end of file or a read error was met.
[[nodiscard]] bool isAtEnd(std::FILE* file);

// Reads up to `count` bytes one by one, until a read meets the end; that read is stored (as 0xFF)
// and counted, too. Returns the number of reads.
[[nodiscard]] int getBytes(std::FILE* file, unsigned char* buffer, int count);

// Read a signed big-endian number of four or two bytes; throw LauncherException with `errorText`
// when the stream held too few. One missing byte at the end of the file is tolerated and reads as
// 0xFF (see getBytes).
std::int32_t loadLongValue(std::FILE* file, const char* errorText);
std::int16_t loadShortValue(std::FILE* file, const char* errorText);

// Bytes to numbers, most significant first, on any processor.
std::int32_t convertToLong(const unsigned char* bytes);
std::int16_t convertToShort(const unsigned char* bytes);

// Reads many lines of a stream. It reads ahead in blocks, so the stream's own position and end mean
// nothing while it is in use.
class LineReader {
 public:
  // Reads from where the stream stands, which counts as `position`.
  LineReader(std::FILE* file, std::int64_t position) : m_file(file), m_position(position) {}

  // The next line without its newline and without carriage returns; valid until the next call.
  std::string_view next();
  // Where the next line begins.
  std::int64_t position() const { return m_position; }
  // True when `next` met the end of the stream: the file's last line had no newline, or no line
  // was left.
  [[nodiscard]] bool isAtEnd() const { return m_atEnd; }

 private:
  std::string_view take(std::size_t size, std::size_t lineEnd);
  [[nodiscard]] bool readMore();

  std::FILE* m_file;
  std::int64_t m_position;
  bool m_atEnd = false;
  bool m_hasCarriageReturns = false;  // somewhere in what was read so far
  std::vector<char> m_buffer;
  std::size_t m_begin = 0;  // to m_end: bytes of the buffer not yet taken
  std::size_t m_end = 0;
};

// Appends the bytes up to a newline or the end to `line`, without carriage returns, then trims it
// of blanks. The caller passes an empty string; a null stream ends at once.
void readLineFromStream(std::FILE* file, SString& line);

#endif
