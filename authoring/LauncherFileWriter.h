// LauncherFileWriter: the bytes of a launcher file, in the layout that src/archive/
// LauncherFileFormat.h draws. Nothing else in the project encodes them; the tests use it, too.
//
// The free functions encode whatever numbers they are given, also wrong ones (the tests need them).
// The writer adds the stub first, then the files, and ends with index, purpose byte and trailer; an
// observer may put something between the index and the purpose byte, where no launcher looks. A
// file that does not end with a newline is followed by one outside its length, since the reader of
// tag files reads whole lines.
#ifndef CORVANE_AUTHORING_LAUNCHERFILEWRITER_H
#define CORVANE_AUTHORING_LAUNCHERFILEWRITER_H

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace authoring {

struct DecompressedSize {
  std::int32_t files = 0;
  std::int32_t bytes = 0;
};

struct IndexRecord {
  std::int32_t type = 0;
  std::int32_t id = 0;
  std::int32_t length = 0;
  std::int32_t offset = 0;
  std::string name;  // at most 32767 bytes, no newline
  std::optional<DecompressedSize> decompressed;
};

inline constexpr std::int64_t kMaxLauncherFileSize = 0x7FFFFFFF;

std::string encodeNumber32(std::int64_t number);
std::string encodeNumber16(std::int64_t number);
std::string encodeEntry(const IndexRecord& record);
std::string encodeIndex(const std::vector<IndexRecord>& records);
std::string encodeTrailer(std::int64_t indexOffset);

// Sees the bytes of a launcher file as they are written, and where its pieces begin and end: the
// stub, each file, the index. (Some bytes lie between pieces.)
class WriteObserver {
 public:
  virtual ~WriteObserver() = default;

  virtual void add(std::string_view bytes) = 0;
  virtual void beginPiece() = 0;
  virtual void endPiece() = 0;
  // What is to stand between the index and `end`, the purpose byte and the trailer. `offset` is its
  // place.
  virtual std::string block(std::int64_t offset, std::string_view end) = 0;
};

class LauncherFileWriter {
 public:
  // Neither is owned. `output` must stand at the beginning of its file; `observer` may be null.
  explicit LauncherFileWriter(std::FILE* output, WriteObserver* observer = nullptr)
      : m_output(output), m_observer(observer) {}

  // Throw AuthoringError when `source`, which the text calls by its `name`, cannot be read, the
  // output cannot be written, or the file grows beyond kMaxLauncherFileSize.
  void addStub(std::FILE* source, const std::string& name);
  void addStub(std::string_view bytes);
  // Stores the bytes; the record's length and offset are filled in.
  void addFile(IndexRecord record, std::FILE* source, const std::string& name);
  void addFile(IndexRecord record, std::string_view bytes);
  // Writes the index and the end of the file. Nothing may be added afterwards. Returns the size.
  std::int64_t finish(std::int32_t purpose);

 private:
  void copy(std::FILE* source, const std::string& name);
  void write(std::string_view bytes);
  void beginPiece() const;
  void endPiece() const;
  void beginFile(IndexRecord& record) const;
  void endFile(IndexRecord& record);

  std::FILE* m_output;
  WriteObserver* m_observer;
  std::int64_t m_position = 0;
  char m_lastByte = '\n';
  std::vector<IndexRecord> m_records;
};

}  // namespace authoring

#endif
