// Stream helpers: lines and big-endian numbers from C streams.
//
// A read error counts as end of file everywhere; nothing here loops on it.
#ifndef CORVANE_TAGFILE_STREAMUTILS_H
#define CORVANE_TAGFILE_STREAMUTILS_H

#include <cstdint>
#include <cstdio>
#include <memory>

#include "util/SString.h"

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

// Opens `path` with the given fopen mode, close-on-exec. Null, with errno set, when it does not
// open. A directory opened for reading counts as a file that does not open (EISDIR).
FilePtr openFile(const SString& path, const char* mode);

// True when nothing more can be read: end of file or a read error was met.
bool isAtEnd(std::FILE* file);

// Reads up to `count` bytes one by one; stops when the end was met before a read. The read that
// meets the end is stored (as 0xFF) and counted. Returns the number of reads.
int getBytes(std::FILE* file, unsigned char* buffer, int count);

// Read a signed big-endian number of four or two bytes; throw LauncherException with `errorText`
// when the stream held too few. One missing byte at the end of the file is tolerated and reads as
// 0xFF (see getBytes).
std::int32_t loadLongValue(std::FILE* file, const char* errorText);
std::int16_t loadShortValue(std::FILE* file, const char* errorText);

// Bytes to numbers, most significant first, on any processor.
std::int32_t convertToLong(const unsigned char* bytes);
std::int16_t convertToShort(const unsigned char* bytes);

// Appends the bytes up to a newline or the end to `line`, without carriage returns, then trims it
// of blanks. The caller passes an empty string; a null stream ends at once.
void readLineFromStream(std::FILE* file, SString& line);

#endif
