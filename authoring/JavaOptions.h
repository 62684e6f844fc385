// JavaOptions: what Java makes of its options, as far as it tells where the class stands, and
// whether Java starts at all.
#ifndef CORVANE_AUTHORING_JAVAOPTIONS_H
#define CORVANE_AUTHORING_JAVAOPTIONS_H

#include <string_view>

namespace authoring {

// The next word belongs to the option, such as that behind --add-modules.
bool takesAWord(std::string_view option);
// The value belongs into the same word, such as that of -Xmx.
bool needsItsValue(std::string_view option);
// A number that is no size, as in -Xmx512MB: Java refuses to start. False for every other option,
// and where something is filled in later.
bool hasBadSize(std::string_view option);
// -cp and its other names.
bool isClasspathOption(std::string_view option);
// The class is not found by the class path: a jar or a module is named instead.
bool startsAJarOrModule(std::string_view option);
// No program has such an option of its own: memory, and what begins with -XX:.
bool isForTheMachine(std::string_view option);
// Java prints something and starts no class, as with -version.
bool startsNothing(std::string_view option);

}  // namespace authoring

#endif
