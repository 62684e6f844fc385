// What the generator writes, as whole texts: the C++ sources and the page of all messages.
#ifndef CORVANE_TOOLS_CATALOGUE_WRITERS_H
#define CORVANE_TOOLS_CATALOGUE_WRITERS_H

#include <string>

#include "Catalogue.h"

namespace catalogue {

enum class Variant { Traditional, Utf8 };

// A C++ source in ASCII that defines the stored texts of src/platform/MessageCatalogue.h. The
// catalogue must be without problems.
std::string textsOf(const Catalogue& catalogue, Variant variant);

// A C++ source that defines the tables of src/platform/CharsetTables.h.
std::string charsetsOf();

// A Markdown page in UTF-8 that shows each message in every language.
std::string pageOf(const Catalogue& catalogue);

}  // namespace catalogue

#endif
