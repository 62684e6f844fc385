// ArchiveUnpacker: unpacks an archive of somebody else's.
#ifndef CORVANE_AUTHORING_ARCHIVEUNPACKER_H
#define CORVANE_AUTHORING_ARCHIVEUNPACKER_H

#include <string>

namespace authoring {

// Unpacks a tar file, compressed or not, or a zip file into the folder. Throws AuthoringError when
// it is none or damaged, and when an entry would leave the folder or is neither a file, a folder
// nor a link.
void unpackArchive(const std::string& path, const std::string& folder);

}  // namespace authoring

#endif
