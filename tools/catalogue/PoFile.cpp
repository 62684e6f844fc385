#include "PoFile.h"

#include <gettext-po.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace catalogue {
namespace {

// The library reports through plain functions without a context of ours.
Problems* g_problems = nullptr;
const char* g_path = "";

std::string placeOf(const char* file, std::size_t line) {
  std::string place = file != nullptr ? file : g_path;
  if (file != nullptr && line != static_cast<std::size_t>(-1)) place += ":" + std::to_string(line);
  return place;
}

void report(int severity, po_message_t, const char* file, std::size_t line, std::size_t, int,
            const char* text) {
  std::string words = text;
  while (!words.empty() && words.back() == '\n')
    words.pop_back();
  g_problems->add(placeOf(file, line), words);
  // The library forbids a return from here.
  if (severity == PO_SEVERITY_FATAL_ERROR) std::exit(1);
}

void reportTwo(int severity, po_message_t first, const char* file1, std::size_t line1,
               std::size_t column1, int multiline1, const char* text1, po_message_t second,
               const char* file2, std::size_t line2, std::size_t column2, int multiline2,
               const char* text2) {
  report(PO_SEVERITY_ERROR, first, file1, line1, column1, multiline1, text1);
  report(severity, second, file2, line2, column2, multiline2, text2);
}

std::string textOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

std::string headerField(const char* header, const char* name) {
  if (header == nullptr) return "";
  std::unique_ptr<char, decltype(&std::free)> field(po_header_field(header, name), &std::free);
  return textOrEmpty(field.get());
}

PoEntry entryOf(po_message_t message) {
  PoEntry entry;
  entry.context = textOrEmpty(po_message_msgctxt(message));
  entry.english = po_message_msgid(message);
  entry.text = po_message_msgstr(message);
  entry.fuzzy = po_message_is_fuzzy(message) != 0;
  entry.plural = po_message_msgid_plural(message) != nullptr;
  return entry;
}

bool isHeader(po_message_t message) {
  return po_message_msgctxt(message) == nullptr && po_message_msgid(message)[0] == '\0';
}

std::vector<PoEntry> entriesOf(po_file_t file) {
  std::vector<PoEntry> entries;
  po_message_iterator_t iterator = po_message_iterator(file, nullptr);
  while (po_message_t message = po_next_message(iterator)) {
    if (!isHeader(message) && po_message_is_obsolete(message) == 0)
      entries.push_back(entryOf(message));
  }
  po_message_iterator_free(iterator);
  return entries;
}

}  // namespace

PoFile readPoFile(const std::string& path, Problems& problems) {
  g_problems = &problems;
  g_path = path.c_str();
  const po_xerror_handler handler = {report, reportTwo};
  PoFile result;
  po_file_t file = po_file_read(path.c_str(), &handler);
  if (file == nullptr) {
    problems.add(path, std::strerror(errno));
    return result;
  }
  const char* header = po_file_domain_header(file, nullptr);
  result.contentType = headerField(header, "Content-Type");
  result.language = headerField(header, "Language");
  result.entries = entriesOf(file);
  po_file_free(file);
  return result;
}

}  // namespace catalogue
