// What every text of the catalogue must keep, so that it can be formatted, printed on a terminal of
// its time and joined with the texts around it.
#ifndef CORVANE_TOOLS_CATALOGUE_TEXTRULES_H
#define CORVANE_TOOLS_CATALOGUE_TEXTRULES_H

#include <cstddef>
#include <string>
#include <vector>

#include "Encoder.h"

namespace catalogue {

// Each problem is one clause that goes on after "entry N: "; no problems: an empty list.
std::vector<std::string> problemsOfEnglish(const std::string& english, Encoder& ascii);

// `encoding` is the name of what `encoder` encodes to.
std::vector<std::string> problemsOfTranslation(std::size_t index, const std::string& english,
                                               const std::string& text, const char* encoding,
                                               Encoder& encoder);

}  // namespace catalogue

#endif
