// JavaClass: what corvane-pack reads and writes of classes in jars.
#ifndef CORVANE_AUTHORING_JAVACLASS_H
#define CORVANE_AUTHORING_JAVACLASS_H

#include <optional>
#include <string>

namespace authoring {

// Letters, digits, _ and $, between dots. All bytes of UTF-8 beyond ASCII count as letters.
bool isClassName(const std::string& name);

// The Java that the class (with dots) in the jar was compiled for; nothing when the jar has no such
// class. Throws AuthoringError when the jar cannot be read, or the entry is no class.
std::optional<int> compiledFor(const std::string& jar, const std::string& className);

// The class that the jar's own manifest starts, empty when it names none.
std::string mainClassOf(const std::string& jar);

// Writes the installed verify archive to `path`, its class marked as compiled for `version`: an
// older Java refuses to load it. The class holds nothing that an old Java does not know, so the
// number in its head is all that changes. Throws AuthoringError.
void writeVerifyArchive(const std::string& path, int version);

}  // namespace authoring

#endif
