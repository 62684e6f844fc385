#include "tagfile/TagFile.h"

#include <utility>

#include "launcher/Launcher.h"
#include "tagfile/StreamUtils.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kFileNotOpened = "Unable to load input file: ";
constexpr const char* kFileNotRead = "Unable to read tag file.";
constexpr const char* kColonMissing = "Missing colon at the end of the tag name.";
constexpr const char* kCompleterMissing = "Missing /: tag completer.";
constexpr const char* kValueMissing = "Invalid tag format.";

constexpr const char* kBlockEnd = "/:";
constexpr char kQuote = '"';

// The value that begins at `first` of the line: what the quotes hold, or all the rest.
SString parseValue(const SString& line, std::size_t first) {
  if (line[first] != kQuote) {
    return line.substr(first);
  }
  std::size_t position = first + 1;
  return parseStringArgument(line, position, true);
}

bool needsQuotes(const SString& value) {
  return value.empty() || isWhitespace(value[0]) || isWhitespace(value.back()) ||
         value.find(kQuote) != SString::npos;
}

SString quoted(const SString& value) {
  SString result = "\"";
  for (const char byte : value.view()) {
    result.append(byte == kQuote ? 2 : 1, byte);
  }
  return result += kQuote;
}

void writeEntry(std::FILE* file, const TagFileEntry& entry) {
  const bool isBlock = entry.values->size() > 1;
  std::fprintf(file, "%s:%s", entry.key.c_str(), isBlock ? "\n" : "");
  for (long i = 0; i < entry.values->size(); ++i) {
    const SString& value = entry.values->at(i);
    std::fprintf(file, "  %s\n", needsQuotes(value) ? quoted(value).c_str() : value.c_str());
  }
  if (isBlock) {
    std::fprintf(file, "%s\n", kBlockEnd);
  }
}

}  // namespace

TagFile::TagFile(const SString& path) {
  const FilePtr file = openFile(path, "r");
  if (file == nullptr) {
    throw LauncherException(kFileNotOpened + path);
  }
  load(file.get(), path, 0, -1);
}

void TagFile::load(std::FILE* file, const SString& name, std::int32_t start, std::int32_t length) {
  m_name = name;
  m_lineNumber = 0;
  std::clearerr(file);  // a failure of whoever read the stream before is not ours
  if (std::fseek(file, start, SEEK_SET) != 0) {
    throw LauncherException(kFileNotRead);
  }
  const std::int64_t end = std::int64_t{start} + length;
  while (!isAtEnd(file) && (length < 0 || ftello(file) < end)) {
    SString line;
    readLine(file, line);
    if (!line.empty()) {
      loadTag(file, line);
    }
  }
  m_loaded = true;
}

void TagFile::readLine(std::FILE* file, SString& line) {
  readLineFromStream(file, line);
  ++m_lineNumber;
}

void TagFile::loadTag(std::FILE* file, const SString& line) {
  const std::size_t colon = line.find(':');
  if (colon == SString::npos) {
    logSyntaxError(kColonMissing, m_name, m_lineNumber);
  }
  const SString key = trimmed(line.substr(0, colon));
  removeValue(key);
  if (colon + 1 == line.size()) {
    loadBlock(file, key);
  } else {
    loadSingleValue(key, line, colon);
  }
}

void TagFile::loadBlock(std::FILE* file, const SString& key) {
  const std::int32_t tagLineNumber = m_lineNumber;
  StringDeque* values = nullptr;
  while (!isAtEnd(file)) {
    SString line;
    readLine(file, line);
    const SString value = parseValue(line, 0);
    if (value == kBlockEnd) {
      return;
    }
    if (value.empty()) {
      continue;
    }
    if (values == nullptr) {
      setTagValue(key, value);
      values = m_entries.back()->values.get();
    } else {
      values->push_back(value);
    }
  }
  logSyntaxError(kCompleterMissing, m_name, tagLineNumber);
}

void TagFile::loadSingleValue(const SString& key, const SString& line, std::size_t colon) {
  const std::size_t first = line.find_first_not_of(kBlanks, colon + 1);
  if (first == SString::npos) {
    logSyntaxError(kValueMissing, m_name, m_lineNumber);
  }
  setTagValue(key, parseValue(line, first));
}

TagFileEntry* TagFile::findEntry(std::string_view key) const {
  for (long i = 0; i < m_entries.size(); ++i) {
    if (m_entries.at(i)->key.view() == key) {
      return m_entries.at(i);
    }
  }
  return nullptr;
}

SString TagFile::getTagValue(const char* key, unsigned long index) const {
  const StringDeque* values = getValue(key);
  return values == nullptr ? SString() : values->at(static_cast<long>(index));
}

const StringDeque* TagFile::getValue(const char* key) const {
  const TagFileEntry* entry = findEntry(key);
  return entry == nullptr ? nullptr : entry->values.get();
}

long TagFile::getTagValueCount(const char* key) const {
  const StringDeque* values = getValue(key);
  return values == nullptr ? 0 : values->size();
}

void TagFile::setTagValue(const SString& key, const SString& value) {
  TagFileEntry* entry = findEntry(key);
  if (entry == nullptr) {
    m_entries.push_back(
        std::make_unique<TagFileEntry>(TagFileEntry{key, std::make_unique<StringDeque>()}));
    entry = m_entries.back();
  }
  const SString kept = value;  // it may be one of the values that go
  entry->values->clear();
  entry->values->push_back(kept);
}

void TagFile::appendTagValue(const SString& key, const SString& value) {
  if (const TagFileEntry* entry = findEntry(key)) {
    entry->values->push_back(value);
  } else {
    setTagValue(key, value);
  }
}

bool TagFile::getBoolTagValue(const char* key, bool defaultValue) const {
  std::int16_t number = 0;
  return convertToShort(getTagValue(key, 0), number) ? number != 0 : defaultValue;
}

void TagFile::setBoolTagValue(const SString& key, bool value) {
  setTagValue(key, value ? "1" : "0");
}

void TagFile::removeValue(const SString& key) {
  for (long i = 0; i < m_entries.size(); ++i) {
    if (m_entries.at(i)->key == key) {
      m_entries.erase(i);
      return;
    }
  }
}

void TagFile::setDynamicJVMTags(const SString& home, const SString& fileName, bool temporary) {
  setTagValue("JVM_HOME", home);
  setTagValue("JVM_FILE", fileName);
  setBoolTagValue("JVM_TEMP", temporary);
}

bool TagFile::write(const SString& path) const {
  FilePtr file = openFile(path, "w");
  if (file == nullptr) {
    return false;
  }
  for (long i = 0; i < m_entries.size(); ++i) {
    writeEntry(file.get(), *m_entries.at(i));
  }
  const bool written = std::ferror(file.get()) == 0;
  return std::fclose(file.release()) == 0 && written;
}

void TagFile::logSyntaxError(const SString& message, const SString& fileName,
                             std::int32_t lineNumber) {
  const SString text =
      "Syntax error in " + fileName + " at line " + convertToString(lineNumber) + " ==> " + message;
  Launcher::logMessage(text, LOG_ERROR);
  throw LauncherException(text);
}
