#include "authoring/LauncherFileWriter.h"

#include <cerrno>
#include <cstring>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/DeferredSignals.h"

namespace authoring {
namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;

std::string encodeNumber(std::int64_t number, int bytes) {
  std::string encoded;
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
    encoded += static_cast<char>(number >> shift & 0xFF);
  }
  return encoded;
}

}  // namespace

std::string encodeNumber32(std::int64_t number) {
  return encodeNumber(number, 4);
}

std::string encodeNumber16(std::int64_t number) {
  return encodeNumber(number, 2);
}

std::string encodeEntry(const IndexRecord& record) {
  std::string entry(1, static_cast<char>(record.type));
  entry += encodeNumber32(record.id);
  entry += encodeNumber32(record.length);
  entry += encodeNumber32(record.offset);
  entry += encodeNumber16(static_cast<std::int64_t>(record.name.size()));
  entry += record.name;
  if (!record.decompressed) {
    return entry + '\0';
  }
  entry += static_cast<char>(kCompressedFlag);
  entry += encodeNumber32(record.decompressed->files);
  entry += encodeNumber32(record.decompressed->bytes);
  return entry;
}

std::string encodeIndex(const std::vector<IndexRecord>& records) {
  std::string index = encodeNumber32(static_cast<std::int64_t>(records.size()));
  for (const IndexRecord& record : records) {
    index += encodeEntry(record);
  }
  return index;
}

std::string encodeTrailer(std::int64_t indexOffset) {
  return encodeNumber32(indexOffset) + encodeNumber32(kLauncherIdentification);
}

void LauncherFileWriter::addStub(std::FILE* source, const std::string& name) {
  beginPiece();
  copy(source, name);
  endPiece();
}

void LauncherFileWriter::addStub(std::string_view bytes) {
  beginPiece();
  write(bytes);
  endPiece();
}

void LauncherFileWriter::addFile(IndexRecord record, std::FILE* source, const std::string& name) {
  beginFile(record);
  copy(source, name);
  endFile(record);
}

void LauncherFileWriter::addFile(IndexRecord record, std::string_view bytes) {
  beginFile(record);
  write(bytes);
  endFile(record);
}

std::int64_t LauncherFileWriter::finish(std::int32_t purpose) {
  const std::int64_t indexOffset = m_position;
  beginPiece();
  write(encodeIndex(m_records));
  endPiece();
  const std::string end = static_cast<char>(purpose) + encodeTrailer(indexOffset);
  if (m_observer != nullptr) {
    write(m_observer->block(m_position, end));
  }
  write(end);
  return m_position;
}

void LauncherFileWriter::beginPiece() const {
  if (m_observer != nullptr) {
    m_observer->beginPiece();
  }
}

void LauncherFileWriter::endPiece() const {
  if (m_observer != nullptr) {
    m_observer->endPiece();
  }
}

void LauncherFileWriter::beginFile(IndexRecord& record) const {
  record.offset = static_cast<std::int32_t>(m_position);
  beginPiece();
}

void LauncherFileWriter::endFile(IndexRecord& record) {
  endPiece();
  record.length = static_cast<std::int32_t>(m_position - record.offset);
  if (record.length > 0 && m_lastByte != '\n') {
    write("\n");
  }
  m_records.push_back(std::move(record));
}

void LauncherFileWriter::copy(std::FILE* source, const std::string& name) {
  std::vector<char> chunk(kChunk);
  std::size_t count;
  while ((count = std::fread(chunk.data(), 1, chunk.size(), source)) > 0) {
    DeferredSignals::throwIfCame();
    write({chunk.data(), count});
  }
  if (std::ferror(source) != 0) {
    throw AuthoringError(name + " cannot be read: " + std::strerror(errno));
  }
}

void LauncherFileWriter::write(std::string_view bytes) {
  m_position += static_cast<std::int64_t>(bytes.size());
  if (m_position > kMaxLauncherFileSize) {
    throw AuthoringError("the launcher file grows beyond 2147483647 bytes");
  }
  if (m_observer != nullptr) {
    m_observer->add(bytes);
  }
  if (std::fwrite(bytes.data(), 1, bytes.size(), m_output) != bytes.size()) {
    throw AuthoringError(std::string("the launcher file cannot be written: ") +
                         std::strerror(errno));
  }
  if (!bytes.empty()) {
    m_lastByte = bytes.back();
  }
}

}  // namespace authoring
