// TagFile: the text format in which every input of the launcher is written.
//
// An ordered list of named tags, each with one or more text values. Tag names are compared byte by
// byte and occur at most once. The format is described in docs/formats.md; the parser reads a
// whole file or a stretch of bytes inside another file (the launcher executable).
//
// The document owns its tags. Failures are LauncherException; a document whose load failed keeps
// the tags read so far and stays "not loaded".
#ifndef CORVANE_TAGFILE_TAGFILE_H
#define CORVANE_TAGFILE_TAGFILE_H

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "util/PtrDeque.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class LineReader;
class TagFileObserver;

// One tag: its values, and its place in the order of the document.
struct TagFileEntry {
  std::uint64_t place = 0;  // rises with every new tag; removed tags leave gaps
  StringDeque values;       // at least one
  bool isOwn = false;       // the only value is one that the launcher found out itself
};

class TagFile {
 public:
  TagFile() = default;
  // Loads the whole file. Throws "Unable to load input file: " and the path when it does not open,
  // else as `load`.
  explicit TagFile(const SString& path);
  virtual ~TagFile() = default;
  TagFile(const TagFile&) = delete;
  TagFile& operator=(const TagFile&) = delete;

  // Adds the tags that begin in the `length` bytes from byte `start` of `file` (to the end of the
  // file when `length` is negative) to the document; a tag that it held already is replaced and
  // moves to the end. `name` is used in messages. The bound is checked only before each tag: a
  // block that has begun is read to its "/:".
  // Throws "Unable to read tag file." when `start` cannot be reached or the system cannot read;
  // "Syntax error in NAME at line N ==> " and the reason (logged as an error first); or the text of
  // `parseStringArgument` for a quoted value without its closing quote (not logged). Leaves the
  // stream's position anywhere. The observer, when there is one, is told what is read.
  void load(std::FILE* file, const SString& name, std::int32_t start, std::int32_t length,
            TagFileObserver* observer = nullptr);

  // A promised name, though nothing of ours calls it.
  bool isLoaded() const { return m_loaded; }
  SString getName() const { return m_name; }
  // The number of bytes that the last successful load read.
  std::int64_t getLoadedBytes() const { return m_loadedBytes; }

  // The value at `index`; empty when there is no such tag or value.
  SString getTagValue(const char* key, unsigned long index) const;
  // The tag's values, owned by the document, or null.
  const StringDeque* getValue(const char* key) const;
  long getTagValueCount(const char* key) const;
  std::vector<SString> getNames() const;  // of all tags, in their order
  // Makes `value` the tag's only value; a new tag goes to the end.
  void setTagValue(const SString& key, const SString& value);
  // Appends `value` to the tag's values.
  void appendTagValue(const SString& key, const SString& value);
  // True for a number other than zero, false for zero, `defaultValue` for anything else (words
  // such as "true" included). Numbers are 16-bit, what follows them is ignored.
  bool getBoolTagValue(const char* key, bool defaultValue) const;
  void setBoolTagValue(const SString& key, bool value);  // "1" or "0"
  void removeValue(const SString& key);

  // The same for what the launcher found out, such as the home of a JVM: it is no text of an
  // author, and no macro in it is meant.
  void setOwnValue(const SString& key, const SString& value);
  bool isOwnValue(const char* key) const;
  // Records a found JVM: JVM_HOME, JVM_FILE and JVM_TEMP, in that order.
  void setDynamicJVMTags(const SString& home, const SString& fileName, bool temporary);

  // Writes the document to `path` so that `load` reads it back equal. Returns 0, or the system's
  // error number when it could not be opened or not be written whole; nothing else tells of that.
  [[nodiscard]] int write(const SString& path) const;
  // What is written.
  SString text() const;

  // Logs "Syntax error in FILE at line N ==> MESSAGE" as an error and throws it.
  [[noreturn]] static void logSyntaxError(const SString& message, const SString& fileName,
                                          std::int32_t lineNumber);

 private:
  struct KeyHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const {
      return std::hash<std::string_view>()(key);
    }
  };
  // By name, since a hostile file may hold millions of tags; `write` puts them in order.
  using Entries = std::unordered_map<SString, TagFileEntry, KeyHash, std::equal_to<>>;

  std::vector<const Entries::value_type*> ordered() const;
  StringDeque& valuesOf(const SString& key);  // of a new tag when there is none of that name
  std::string_view readLine(LineReader& reader);
  void loadTag(LineReader& reader, std::string_view line);
  void loadBlock(LineReader& reader, const SString& key);
  void loadSingleValue(const SString& key, std::string_view line, std::size_t colon);

  Entries m_entries;
  std::uint64_t m_nextPlace = 0;
  bool m_loaded = false;
  std::int64_t m_loadedBytes = 0;
  std::int32_t m_lineNumber = 0;          // of the current load; its first line is 1
  TagFileObserver* m_observer = nullptr;  // of the current load
  SString m_name;
};

using TagFilePtrDeque = PtrDeque<TagFile>;

#endif
