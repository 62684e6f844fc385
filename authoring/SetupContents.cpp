#include "authoring/SetupContents.h"

#include <cctype>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/FileTypes.h"
#include "authoring/LauncherFileReader.h"
#include "authoring/Manifest.h"
#include "authoring/Packer.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

// True when the first byte that is not blank is the brace of a JSON object.
bool isManifest(const std::string& path) {
  const LauncherFile launcher = readLauncherFile(path);
  if (launcher.hasTrailer) {
    return false;
  }
  std::rewind(launcher.file.get());
  int byte = std::fgetc(launcher.file.get());
  while (std::isspace(byte) != 0) {
    byte = std::fgetc(launcher.file.get());
  }
  return byte == '{';
}

// Parses the tag file by `load`, or notes why it does not parse.
template <class Load>
void loadTagFile(Setup& setup, SetupFile& file, Load load) {
  try {
    file.tagFile = std::make_unique<TagFile>();
    load(*file.tagFile);
  } catch (const std::exception& e) {
    file.tagFile.reset();
    const std::string text = e.what();
    const bool namesFile = text.find(file.label) != std::string::npos;
    setup.findings.push_back(namesFile ? text : file.label + ": " + text);
  }
}

void loadFromManifest(Setup& setup, const Manifest& manifest) {
  for (const ManifestFile& source : manifest.files) {
    SetupFile file = {source.type, source.id, source.name, source.path, nullptr};
    if (isTagFileType(source.type)) {
      loadTagFile(setup, file, [&](TagFile& tagFile) {
        const FilePtr stream = openFile(source.path.c_str(), "r");
        if (stream == nullptr) {
          throw AuthoringError("cannot be read");
        }
        tagFile.load(stream.get(), source.path.c_str(), 0, -1);
      });
    }
    setup.files.push_back(std::move(file));
  }
}

void loadFromLauncher(Setup& setup, const LauncherFile& launcher) {
  for (long i = 0; i < launcher.entries.size(); ++i) {
    const FileIndexEntry& entry = *launcher.entries.at(i);
    const std::string name = entry.getFileName().c_str();
    SetupFile file = {entry.getFileType(), entry.getFileId(), name, printable(name), nullptr};
    if (!isInside(launcher, entry)) {
      setup.findings.push_back(file.label + ": its bytes lie outside the launcher file");
    } else if (entry.isTagFile()) {
      loadTagFile(setup, file, [&](TagFile& tagFile) {
        tagFile.load(launcher.file.get(), name.c_str(), entry.getOffsetToBytes(),
                     entry.getFileLength());
      });
    }
    setup.files.push_back(std::move(file));
  }
}

}  // namespace

Setup loadSetup(const std::string& path, const std::vector<std::string>& baseFolders) {
  Setup setup;
  setup.label = path;
  if (isManifest(path)) {
    loadFromManifest(setup, loadManifest(path, baseFolders));
  } else {
    loadFromLauncher(setup, readLauncherFile(path));
  }
  return setup;
}

}  // namespace authoring
