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

// Stores the tag file that `load` returns, or adds a finding why it does not parse.
template <class Load>
void loadTagFile(Setup& setup, SetupFile& file, Load load) {
  try {
    file.tagFile = load();
  } catch (const std::exception& e) {
    const std::string text = e.what();
    const bool namesFile = text.find(file.label) != std::string::npos;
    setup.findings.push_back(namesFile ? text : file.label + ": " + text);
  }
}

void loadFromManifest(Setup& setup, const Manifest& manifest) {
  for (const ManifestFile& source : manifest.files) {
    SetupFile file = {source.type, source.id, source.name, source.path, nullptr};
    if (isTagFileType(source.type)) {
      loadTagFile(setup, file, [&] {
        const FilePtr stream = openFile(source.path.c_str(), "r");
        if (stream == nullptr) {
          throw AuthoringError("cannot be read");
        }
        auto tagFile = std::make_unique<TagFile>();
        tagFile->load(stream.get(), source.path.c_str(), 0, -1);
        return tagFile;
      });
    }
    setup.files.push_back(std::move(file));
  }
}

void loadFromLauncher(Setup& setup, const LauncherFile& launcher) {
  TagFileLoader loader(launcher.file.get());
  for (long i = 0; i < launcher.index.size(); ++i) {
    FileIndexEntry& entry = *launcher.index.at(i);
    const std::string name = entry.getFileName().c_str();
    SetupFile file = {entry.getFileType(), entry.getFileId(), name, printable(name), nullptr};
    if (!isInside(launcher, entry)) {
      setup.findings.push_back(file.label + ": its bytes lie outside the launcher file");
    } else if (entry.isTagFile()) {
      loadTagFile(setup, file, [&] {
        loader.load(entry);
        return entry.takeTagFile();
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
