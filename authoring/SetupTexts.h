// SetupTexts: the tag files and the manifest of a new setup.
#ifndef CORVANE_AUTHORING_SETUPTEXTS_H
#define CORVANE_AUTHORING_SETUPTEXTS_H

#include <string>
#include <vector>

#include "authoring/JavaRange.h"

namespace authoring {

struct SetupPlan {
  std::string mainClass;
  std::vector<std::string> jars;  // paths for the manifest
  std::string title;
  JavaRange java;
  bool needs64Bit = false;
};

struct NamedText {
  std::string name;
  std::string text;
};

// All files of the folder but the verify archive, whose name is kVerifyName.
std::vector<NamedText> setupTexts(const SetupPlan& plan);
inline constexpr const char* kVerifyName = "verify.jar";

// Throws AuthoringError when the title cannot be shown: it is no UTF-8, holds a control character,
// or is empty.
void checkTitle(const std::string& title);

}  // namespace authoring

#endif
