#include "Catalogue.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <vector>

#include "Encoder.h"
#include "PoFile.h"
#include "TextRules.h"

namespace catalogue {
namespace {

std::string placeOf(const std::string& path, const Locale& locale) {
  return path + ": " + locale.code;
}

std::string placeOf(const std::string& path, const Locale& locale, const std::string& entry) {
  return placeOf(path, locale) + ": entry " + entry;
}

// 1..39, or 0 when the msgctxt is no catalogue index as this program writes it.
std::size_t indexOf(const std::string& context) {
  std::size_t index = 0;
  std::from_chars(context.data(), context.data() + context.size(), index);
  return index < kEntryCount && std::to_string(index) == context ? index : 0;
}

// Sorts a file's entries by their index; nulls where there is none.
std::vector<const PoEntry*> entriesByIndex(const PoFile& file, const std::string& path,
                                           const Locale& locale, Problems& problems) {
  std::vector<const PoEntry*> entries(kEntryCount);
  for (const PoEntry& entry : file.entries) {
    const std::size_t index = indexOf(entry.context);
    if (index == 0) {
      problems.add(placeOf(path, locale, "\"" + entry.context + "\""),
                   "unknown; msgctxt is a number from 1 to 39");
    } else if (entries[index] != nullptr) {
      problems.add(placeOf(path, locale, entry.context), "stands more than once");
    } else {
      entries[index] = &entry;
    }
  }
  for (std::size_t index = 1; index < kEntryCount; ++index) {
    if (entries[index] == nullptr)
      problems.add(placeOf(path, locale, std::to_string(index)), "missing");
  }
  return entries;
}

void checkContentType(const PoFile& file, const std::string& path, const Locale& locale,
                      Problems& problems) {
  if (file.contentType != "text/plain; charset=UTF-8") {
    problems.add(placeOf(path, locale), "the header's Content-Type is \"" + file.contentType +
                                            "\", not \"text/plain; charset=UTF-8\"");
  }
}

// Why an entry cannot be used; empty when it can.
std::string unusableBecause(const PoEntry& entry, const std::string& english) {
  if (entry.english != english)
    return "msgid differs from the template's: \"" + entry.english + "\"";
  if (entry.plural) return "has a plural form";
  if (entry.fuzzy) return "is marked fuzzy";
  if (entry.text.empty()) return "is not translated";
  return "";
}

Texts readTemplate(const std::string& path, Problems& problems) {
  const Locale& locale = kLocales[0];
  Texts texts;
  texts[0] = locale.code;
  const PoFile file = readPoFile(path, locale.code, problems);
  if (problems.count() != 0) return texts;
  checkContentType(file, path, locale, problems);
  Encoder encoder(locale.encoding);
  const std::vector<const PoEntry*> entries = entriesByIndex(file, path, locale, problems);
  for (std::size_t index = 1; index < kEntryCount; ++index) {
    if (entries[index] == nullptr) continue;
    texts[index] = entries[index]->english;
    for (const std::string& problem : problemsOfEnglish(texts[index], encoder))
      problems.add(placeOf(path, locale, std::to_string(index)), problem);
  }
  return texts;
}

Texts readTranslation(const std::string& path, const Locale& locale, const Texts& english,
                      Problems& problems) {
  Texts texts;
  texts[0] = locale.code;
  const int before = problems.count();
  const PoFile file = readPoFile(path, locale.code, problems);
  if (problems.count() != before) return texts;
  checkContentType(file, path, locale, problems);
  if (file.language != locale.code) {
    problems.add(placeOf(path, locale),
                 "the header's Language is \"" + file.language + "\", not the file's name");
  }
  Encoder encoder(locale.encoding);
  const std::vector<const PoEntry*> entries = entriesByIndex(file, path, locale, problems);
  for (std::size_t index = 1; index < kEntryCount; ++index) {
    if (entries[index] == nullptr) continue;
    const std::string place = placeOf(path, locale, std::to_string(index));
    const std::string reason = unusableBecause(*entries[index], english[index]);
    if (!reason.empty()) {
      problems.add(place, reason);
      continue;
    }
    texts[index] = entries[index]->text;
    for (const std::string& problem :
         problemsOfTranslation(index, english[index], texts[index], locale.encoding, encoder))
      problems.add(place, problem);
  }
  return texts;
}

// A PO file whose name is no locale is a translator's mistake.
void checkFileNames(const std::string& folder, Problems& problems) {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    if (file.path().extension() == ".po") names.push_back(file.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  const auto fileOf = [&](const std::string& name) { return folder + "/" + name + ".po"; };
  for (const std::string& name : names) {
    const auto isNamed = [&](const Locale& locale) { return name == locale.code; };
    if (std::none_of(kLocales.begin() + 1, kLocales.end(), isNamed))
      problems.add(fileOf(name), "no translation goes by this name");
  }
}

}  // namespace

Catalogue readCatalogue(const std::string& folder, Problems& problems) {
  Catalogue catalogue;
  catalogue[0] = readTemplate(folder + "/corvane-launcher.pot", problems);
  if (problems.count() != 0) return catalogue;  // else the translations would be blamed for it
  checkFileNames(folder, problems);
  for (std::size_t i = 1; i < kLocaleCount; ++i) {
    const Locale& locale = kLocales[i];
    const std::string path = folder + "/" + locale.code + ".po";
    catalogue[i] = readTranslation(path, locale, catalogue[0], problems);
  }
  return catalogue;
}

}  // namespace catalogue
