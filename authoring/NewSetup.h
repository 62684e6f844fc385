// NewSetup: makes the folder of a new setup.
#ifndef CORVANE_AUTHORING_NEWSETUP_H
#define CORVANE_AUTHORING_NEWSETUP_H

#include <string>
#include <vector>

namespace authoring {

// As the author wrote them; what is empty is taken from the jars and the folder's name.
struct NewSetupOptions {
  std::string folder;
  std::vector<std::string> jars;
  std::string mainClass;
  std::string title;
  std::string java;
  bool needs64Bit = false;
};

// Throws AuthoringError when a jar is not there, or two have the same name.
void checkJars(const NewSetupOptions& options);

// What the first jar says, or nothing. Throws AuthoringError when it is no jar.
std::string proposedMainClass(const NewSetupOptions& options);

// Fills in what is empty. Throws AuthoringError when something is wrong or cannot be known.
NewSetupOptions completeOptions(NewSetupOptions options);

// `options` are complete. The folder is new or empty, and is made whole or not at all. Returns the
// names of its files, the manifest first. Throws AuthoringError.
std::vector<std::string> makeSetup(const NewSetupOptions& options);

// Asks for what is empty, again after an answer that is wrong, and returns the completed options.
// Throws AuthoringError at the end of the input.
NewSetupOptions askForOptions(NewSetupOptions options);

}  // namespace authoring

#endif
