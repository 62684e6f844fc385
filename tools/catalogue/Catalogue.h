// All texts of the catalogue in UTF-8, read from the template and the PO files and checked.
#ifndef CORVANE_TOOLS_CATALOGUE_CATALOGUE_H
#define CORVANE_TOOLS_CATALOGUE_CATALOGUE_H

#include <array>
#include <string>

#include "Locales.h"
#include "Problems.h"

namespace catalogue {

inline constexpr std::size_t kEntryCount = 40;

// Entry 0 is the locale's code, the others are the messages by their index.
using Texts = std::array<std::string, kEntryCount>;
using Catalogue = std::array<Texts, kLocaleCount>;  // in the order of kLocales

// Reads FOLDER/corvane-launcher.pot (its msgids are the English texts) and FOLDER/<code>.po of
// every other locale. What is wrong is added to `problems`; the result is complete only when there
// is nothing.
Catalogue readCatalogue(const std::string& folder, Problems& problems);

}  // namespace catalogue

#endif
