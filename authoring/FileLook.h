// FileLook: what a file that is not what it should be looks like.
#ifndef CORVANE_AUTHORING_FILELOOK_H
#define CORVANE_AUTHORING_FILELOOK_H

#include <cstdio>
#include <string>
#include <string_view>

namespace authoring {

// What begins as bytes of a known kind do, for messages; empty for any other.
std::string formatOf(std::string_view bytes);
// By its first bytes, for messages: "an empty file", "a zip archive", "a text".
std::string lookOf(std::string_view bytes);
std::string lookOf(std::FILE* file);

// True when the bytes may begin a manifest: a brace or a comment behind blanks and a byte order
// mark.
[[nodiscard]] bool looksLikeManifest(std::string_view bytes);
// No control characters but those of lines and blanks.
[[nodiscard]] bool isText(std::string_view bytes);
// The first bytes, as many as are looked at.
std::string firstBytes(std::FILE* file);

}  // namespace authoring

#endif
