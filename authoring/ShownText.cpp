#include "authoring/ShownText.h"

#include "authoring/SafeText.h"

namespace authoring {

std::string shownText(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) {
    return safeText(text);
  }
  std::size_t end = longest;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
    --end;  // inside a letter of several bytes
  }
  return safeText(text.substr(0, end)) + "...";
}

}  // namespace authoring
