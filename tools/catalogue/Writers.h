// What the generator writes, as whole texts: the C++ tables and the page of all messages.
#ifndef CORVANE_TOOLS_CATALOGUE_WRITERS_H
#define CORVANE_TOOLS_CATALOGUE_WRITERS_H

#include <string>

#include "Catalogue.h"

namespace catalogue {

enum class Variant { Traditional, Utf8 };

// A C++ source in ASCII that defines msg_locale_table and one unixlauncher_msg_<code> for each
// locale (src/platform/MessageCatalogue.h), as constant data. The catalogue must be without
// problems.
std::string tablesOf(const Catalogue& catalogue, Variant variant);

// A Markdown page in UTF-8 that shows each message in every language.
std::string pageOf(const Catalogue& catalogue);

}  // namespace catalogue

#endif
