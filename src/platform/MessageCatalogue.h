// The message catalogue: 39 texts in 27 languages, in the language and charset of the user.
//
// The texts are constant data that the build makes from messages/*.po. It makes them twice, and the
// stubs differ in nothing else (docs/messages.md):
//
//   corvane-launcher      stores each language in its traditional encoding and prints the texts as
//                         they stand. LANG alone chooses the language.
//   corvane-launcher-any  stores UTF-8 and writes what the user's terminal shows: the language in
//                         the user's charset where that has all its letters, English where not.
#ifndef CORVANE_PLATFORM_MESSAGECATALOGUE_H
#define CORVANE_PLATFORM_MESSAGECATALOGUE_H

#include <cstdint>
#include <memory>

#include "platform/Charset.h"

// The catalogue indexes that the console and the temporary-directory code use directly.
enum CatalogueIndex {
  kCatalogueInitializing = 1,
  kCatalogueNoJVM = 4,
  kCatalogueNotLaunched = 5,
  kCatalogueRunning = 7,
  kCataloguePreparingJVM = 8,
  kCatalogueSearching = 9,
  kCatalogueAskDestination = 17,
  kCatalogueDot = 18,
  kCatalogueTempDirMissing = 39,
  kCatalogueSize = 40
};

inline constexpr int kLocaleCount = 27;

// What the build stores. For each locale 40 texts, one after the other, each with its zero byte:
// the locale's code, and printf formats with at most one "%s". Locale 0 is English and the
// fallback.
extern const bool kTextsAreUtf8;  // which stub this is, see above
extern const char kStoredTexts[];
extern const std::uint32_t kLocaleStarts[];  // in kStoredTexts
// For each locale a bit for each table (Charset::table) that has all its letters; only with
// kTextsAreUtf8.
extern const std::uint64_t kLocaleCharsets[];

// Text 0..39 of locale 0..26, as it is stored.
const char* storedText(int locale, int index);

// The locale (0..26) that the user's messages are written in; determined anew at each call.
int get_locale();

// The charset that titles are shown in, and messages of corvane-launcher-any.
Charset consoleCharset();

// Message `id` of the current locale with `arg` (a C string, or null) in the place of its "%s", in
// a buffer of 1024 zero-filled bytes; a longer text is cut. An id outside 0..39 gives
// "Error displaying message: id(N)".
std::unique_ptr<char[]> get_msg(int id, const void* arg);

#endif
