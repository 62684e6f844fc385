#include "PoFile.h"

#include <gettext-po.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

// Called by the leak sanitizer: libgettextpo leaks memory for each msgctxt that it reads, later
// releases for each entry. These leaks are not ours and must not fail a build with the sanitizer.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libgettextpo\n";
}
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_options() {
  return "print_suppressions=0";
}

namespace catalogue {
namespace {

// The library's callbacks take no context: this is it.
struct Reading {
  Problems* problems;
  const char* path;
  const char* locale;
};
Reading g_reading;

// The library's texts may have several lines.
std::string onOneLine(std::string text) {
  while (!text.empty() && text.back() == '\n')
    text.pop_back();
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

void report(int severity, po_message_t message, const char*, std::size_t line, std::size_t, int,
            const char* text) {
  std::string place = g_reading.path;
  if (line != static_cast<std::size_t>(-1)) place += ":" + std::to_string(line);
  place += std::string(": ") + g_reading.locale;
  if (message != nullptr && po_message_msgctxt(message) != nullptr)
    place += std::string(": entry ") + po_message_msgctxt(message);
  g_reading.problems->add(place, onOneLine(text));
  // The library forbids a return from here.
  if (severity == PO_SEVERITY_FATAL_ERROR) std::exit(1);
}

// An entry that stands twice: the first place has the line, the second the message.
void reportTwo(int severity, po_message_t, const char* file, std::size_t line, std::size_t column,
               int multiline, const char* text, po_message_t message, const char*, std::size_t,
               std::size_t, int, const char*) {
  report(severity, message, file, line, column, multiline, text);
}

std::string textOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

std::string headerField(const char* header, const char* name) {
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

void addMessage(po_message_t message, PoFile& file) {
  if (isHeader(message)) {
    file.contentType = headerField(po_message_msgstr(message), "Content-Type");
    file.language = headerField(po_message_msgstr(message), "Language");
  } else if (po_message_is_obsolete(message) == 0) {
    file.entries.push_back(entryOf(message));
  }
}

}  // namespace

PoFile readPoFile(const std::string& path, const char* locale, Problems& problems) {
  g_reading = {&problems, path.c_str(), locale};
  const po_xerror_handler handler = {report, reportTwo};
  PoFile result;
  po_file_t file = po_file_read(path.c_str(), &handler);
  if (file == nullptr) {
    problems.add(path + ": " + locale, std::strerror(errno));
    return result;
  }
  po_message_iterator_t iterator = po_message_iterator(file, nullptr);
  while (po_message_t message = po_next_message(iterator)) {
    addMessage(message, result);
  }
  po_message_iterator_free(iterator);
  po_file_free(file);
  return result;
}

}  // namespace catalogue
