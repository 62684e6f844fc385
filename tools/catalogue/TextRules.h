// Rules that let a text of the catalogue be formatted, printed in its encoding and joined with the
// texts around it.
#ifndef CORVANE_TOOLS_CATALOGUE_TEXTRULES_H
#define CORVANE_TOOLS_CATALOGUE_TEXTRULES_H

#include <cstddef>
#include <string>
#include <vector>

#include "Encoder.h"

namespace catalogue {

// Each problem continues the text "entry N: ". The list is empty when there is none.
std::vector<std::string> problemsOfEnglish(const std::string& english, Encoder& ascii);

// `encoding` is the name of what `encoder` encodes to.
std::vector<std::string> problemsOfTranslation(std::size_t index, const std::string& english,
                                               const std::string& text, const char* encoding,
                                               Encoder& encoder);

}  // namespace catalogue

#endif
