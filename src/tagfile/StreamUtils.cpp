#include "tagfile/StreamUtils.h"

#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

bool isDirectory(std::FILE* file) {
  struct stat status;
  return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

void loadBytes(std::FILE* file, unsigned char* bytes, int count, const char* errorText) {
  if (getBytes(file, bytes, count) < count) {
    throw LauncherException(errorText);
  }
}

// Keeps other users of the stream out, so that each byte can be read without a lock of its own.
class StreamLock {
 public:
  explicit StreamLock(std::FILE* file) : m_file(file) { flockfile(file); }
  ~StreamLock() { funlockfile(m_file); }
  StreamLock(const StreamLock&) = delete;
  StreamLock& operator=(const StreamLock&) = delete;

 private:
  std::FILE* m_file;
};

void appendLine(std::FILE* file, SString& line) {
  const StreamLock lock(file);
  char chunk[512];  // most lines fit: one append, so the line's buffer has no room to spare
  std::size_t used = 0;
  for (int byte = getc_unlocked(file); byte != '\n' && byte != EOF; byte = getc_unlocked(file)) {
    if (byte == '\r') {
      continue;
    }
    if (used == sizeof chunk) {
      line.append({chunk, used});
      used = 0;
    }
    chunk[used++] = static_cast<char>(byte);
  }
  line.append({chunk, used});
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
    // QUIRK(end-is-a-byte): the read that meets the end is stored (EOF as a byte is 0xFF) and
    // counted; a number at the very end of a file may lack its last byte.
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

void readLineFromStream(std::FILE* file, SString& line) {
  if (file != nullptr) {
    appendLine(file, line);
  }
  trim(line);
}
