#include "tagfile/TagFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>
#include <vector>

#include "launcher/Log.h"
#include "tagfile/Quotes.h"
#include "tagfile/StreamUtils.h"
#include "tagfile/TagFileObserver.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "tagfile/WriteAll.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kFileNotOpened = "Unable to load input file: ";
constexpr const char* kFileNotRead = "Unable to read tag file.";
constexpr const char* kColonMissing = "Missing colon at the end of the tag name.";
constexpr const char* kCompleterMissing = "Missing /: tag completer.";
constexpr const char* kValueMissing = "Invalid tag format.";

constexpr const char* kBlockEnd = "/:";
constexpr mode_t kNewFileMode = 0666;  // less the umask

// The value that begins at `first` of the line: the text in quotes, or the rest of the line.
SString parseValue(std::string_view line, std::size_t first) {
  if (first >= line.size() || line[first] != kQuote) {
    return SString(line.substr(first));
  }
  std::size_t position = first + 1;
  return parseStringArgument(SString(line), position, true);
}

bool needsQuotes(const SString& value) {
  return value.empty() || isWhitespace(value[0]) || isWhitespace(value.back()) ||
         value.find(kQuote) != SString::npos;
}

// For C a text ends at its first zero byte.
void appendTag(SString& text, const SString& key, const StringDeque& values) {
  const bool isBlock = values.size() > 1;
  text += key.c_str();
  text += isBlock ? ":\n" : ":";
  for (long i = 0; i < values.size(); ++i) {
    const SString value = values.at(i).c_str();
    text += "  ";
    text += needsQuotes(value) ? asQuotedArgument(value) : value;
    text += '\n';
  }
  if (isBlock) {
    text += kBlockEnd;
    text += '\n';
  }
}

// Opens a file and leaves nothing in it. O_TRUNC would do that, too; but some file systems bring a
// file that was cut to the disk as soon as it is closed, even one that was empty before.
int openEmpty(const SString& path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, kNewFileMode);
  struct stat status = {};
  if (file != -1 && fstat(file, &status) == 0 && status.st_size > 0 && ftruncate(file, 0) != 0) {
    const int error = errno;
    close(file);
    errno = error;
    return -1;
  }
  return file;
}

}  // namespace

TagFile::TagFile(const SString& path) {
  const FilePtr file = openFile(path, "r");
  if (file == nullptr) {
    throw LauncherException(kFileNotOpened + path);
  }
  load(file.get(), path, 0, -1);
}

void TagFile::load(std::FILE* file, const SString& name, std::int32_t start, std::int32_t length,
                   TagFileObserver* observer) {
  m_name = name;
  m_observer = observer;
  m_lineNumber = 0;
  std::clearerr(file);  // errors of earlier reads are not ours
  if (std::fseek(file, start, SEEK_SET) != 0) {
    throw LauncherException(kFileNotRead);
  }
  const std::int64_t end = std::int64_t{start} + length;
  LineReader reader(file, start);
  // QUIRK(bound-before-tags-only): a block that begins before the bound is read to its "/:", even
  // past the bound.
  while (!reader.isAtEnd() && (length < 0 || reader.position() < end)) {
    const std::string_view line = readLine(reader);
    if (!line.empty()) {
      loadTag(reader, line);
    }
  }
  if (std::ferror(file) != 0) {
    throw LauncherException(kFileNotRead);
  }
  m_loaded = true;
  m_loadedBytes = reader.position() - start;
}

std::string_view TagFile::readLine(LineReader& reader) {
  if (m_lineNumber < std::numeric_limits<std::int32_t>::max()) {
    ++m_lineNumber;
  }
  const std::string_view line = withoutBlanks(reader.next());
  if (m_observer != nullptr) {
    m_observer->onLine(m_lineNumber, line);
  }
  return line;
}

void TagFile::loadTag(LineReader& reader, std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) {
    logSyntaxError(kColonMissing, m_name, m_lineNumber);
  }
  const SString key(withoutBlanks(line.substr(0, colon)));
  // QUIRK(last-definition-wins): a tag that is defined again moves to the end. Its earlier values
  // go before the new ones are read, so after a definition that fails there is no such tag.
  removeValue(key);
  if (m_observer != nullptr) {
    m_observer->onTag(key.view());
  }
  if (colon + 1 == line.size()) {
    loadBlock(reader, key);
  } else {
    loadSingleValue(key, line, colon);
  }
}

void TagFile::loadBlock(LineReader& reader, const SString& key) {
  const std::int32_t tagLineNumber = m_lineNumber;
  StringDeque* values = nullptr;
  while (!reader.isAtEnd()) {
    SString value = parseValue(readLine(reader), 0);
    // QUIRK(quoted-completer): "/:" in quotes ends the block, too, and an empty value is skipped.
    if (value == kBlockEnd) {
      if (m_observer != nullptr) {
        m_observer->onBlockEnd();
      }
      return;
    }
    if (value.empty()) {
      continue;
    }
    if (values == nullptr) {
      values = &valuesOf(key);
    }
    values->push_back(std::move(value));
    if (m_observer != nullptr) {
      m_observer->onValue();
    }
  }
  logSyntaxError(kCompleterMissing, m_name, tagLineNumber);
}

void TagFile::loadSingleValue(const SString& key, std::string_view line, std::size_t colon) {
  const std::size_t first = line.find_first_not_of(kBlanks, colon + 1);
  if (first == std::string_view::npos) {
    logSyntaxError(kValueMissing, m_name, m_lineNumber);
  }
  SString value = parseValue(line, first);  // may throw, and then there is no such tag
  valuesOf(key).push_back(std::move(value));
  if (m_observer != nullptr) {
    m_observer->onValue();
  }
}

StringDeque& TagFile::valuesOf(const SString& key) {
  const auto [entry, isNew] = m_entries.try_emplace(key);
  if (isNew) {
    entry->second.place = m_nextPlace++;
  }
  return entry->second.values;
}

SString TagFile::getTagValue(const char* key, unsigned long index) const {
  const StringDeque* values = getValue(key);
  return values == nullptr ? SString() : values->at(static_cast<long>(index));
}

const StringDeque* TagFile::getValue(const char* key) const {
  const auto entry = m_entries.find(std::string_view(key));
  return entry == m_entries.end() ? nullptr : &entry->second.values;
}

long TagFile::getTagValueCount(const char* key) const {
  const StringDeque* values = getValue(key);
  return values == nullptr ? 0 : values->size();
}

void TagFile::setTagValue(const SString& key, const SString& value) {
  // It may be one of the values to be cleared.
  const SString kept = value;  // NOLINT(performance-unnecessary-copy-initialization)
  StringDeque& values = valuesOf(key);
  values.clear();
  values.push_back(kept);
  m_entries.find(key)->second.isOwn = false;
}

void TagFile::appendTagValue(const SString& key, const SString& value) {
  valuesOf(key).push_back(value);
}

bool TagFile::getBoolTagValue(const char* key, bool defaultValue) const {
  std::int16_t number = 0;
  return convertToShort(getTagValue(key, 0), number) ? number != 0 : defaultValue;
}

void TagFile::setBoolTagValue(const SString& key, bool value) {
  setTagValue(key, value ? "1" : "0");
}

void TagFile::removeValue(const SString& key) {
  m_entries.erase(key);
}

void TagFile::setOwnValue(const SString& key, const SString& value) {
  setTagValue(key, value);
  m_entries.find(key)->second.isOwn = true;
}

bool TagFile::isOwnValue(const char* key) const {
  const auto entry = m_entries.find(std::string_view(key));
  return entry != m_entries.end() && entry->second.isOwn;
}

void TagFile::setDynamicJVMTags(const SString& home, const SString& fileName, bool temporary) {
  setOwnValue(tagname::kJVMHome, home);
  setOwnValue(tagname::kJVMFile, fileName);
  setBoolTagValue(tagname::kJVMTemp, temporary);
}

int TagFile::write(const SString& path) const {
  const int file = openEmpty(path);
  if (file == -1) {
    return errno;
  }
  const int error = writeAll(file, text().view());
  const bool isClosed = close(file) == 0;
  return error == 0 && !isClosed ? errno : error;
}

std::vector<const TagFile::Entries::value_type*> TagFile::ordered() const {
  std::vector<const Entries::value_type*> ordered;
  for (const auto& entry : m_entries) {
    ordered.push_back(&entry);
  }
  std::sort(ordered.begin(), ordered.end(),
            [](const auto* a, const auto* b) { return a->second.place < b->second.place; });
  return ordered;
}

std::vector<SString> TagFile::getNames() const {
  std::vector<SString> names;
  for (const auto* entry : ordered()) {
    names.push_back(entry->first);
  }
  return names;
}

SString TagFile::text() const {
  SString text;
  for (const auto* entry : ordered()) {
    appendTag(text, entry->first, entry->second.values);
  }
  return text;
}

void TagFile::logSyntaxError(const SString& message, const SString& fileName,
                             std::int32_t lineNumber) {
  const SString text =
      "Syntax error in " + fileName + " at line " + convertToString(lineNumber) + " ==> " + message;
  logMessage(text, LOG_ERROR);
  throw LauncherException(text);
}
