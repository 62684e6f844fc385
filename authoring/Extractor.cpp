#include "authoring/Extractor.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/DeferredSignals.h"
#include "authoring/FileTypes.h"
#include "authoring/Manifest.h"
#include "authoring/OutputFolder.h"
#include "authoring/StubRecognition.h"
#include "authoring/UnpackedManifest.h"
#include "authoring/Verification.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

// A stretch of the launcher file; `label` is how messages call it.
struct Stretch {
  std::string label;
  std::int64_t begin;
  std::int64_t size;
};

std::string place(long position, const FileIndexEntry& entry) {
  return "entry " + std::to_string(position) + " (" + printable(entry.getFileName()) + ")";
}

Stretch stretchOf(const LauncherFile& launcher, long position) {
  const FileIndexEntry& entry = *launcher.index.at(position);
  return {place(position, entry), entry.getOffsetToBytes(), entry.getFileLength()};
}

// "input.tag" is a fault only for -cv:extract, which writes a file of that name.
std::string findEscape(const SString& name) {
  return name == "input.tag" ? "" : findNameFault(name);
}

void checkInside(const LauncherFile& launcher, long position) {
  const FileIndexEntry& entry = *launcher.index.at(position);
  if (!isInside(launcher, entry)) {
    throw AuthoringError(place(position, entry) +
                         ": its bytes lie outside the file; nothing was written");
  }
}

void checkEntries(const LauncherFile& launcher, const std::vector<long>& positions) {
  std::map<std::string, long> names;
  for (const long i : positions) {
    const FileIndexEntry& entry = *launcher.index.at(i);
    const std::string fault = findEscape(entry.getFileName());
    if (!fault.empty()) {
      throw AuthoringError(place(i, entry) + ": its name " + fault + "; nothing was written");
    }
    checkInside(launcher, i);
    const auto [first, isNew] = names.emplace(entry.getFileName().c_str(), i);
    if (!isNew) {
      throw AuthoringError(place(i, entry) + ": entry " + std::to_string(first->second) +
                           " has this name, too; nothing was written, take one of them by its "
                           "--id or its --type");
    }
  }
}

// --- Copying ---

[[noreturn]] void failToWrite(const std::string& path, int error) {
  throw AuthoringError(path + " cannot be written: " + std::strerror(error));
}

// Reads the next bytes of a stretch, at least one.
std::size_t readBytes(std::FILE* launcher, char* bytes, std::size_t size,
                      const std::string& label) {
  const std::size_t count = std::fread(bytes, 1, size, launcher);
  const int error = errno;
  if (count == 0) {
    throw AuthoringError(label + ": its bytes cannot be read: " +
                         (std::ferror(launcher) != 0 ? std::strerror(error)
                                                     : "the launcher file has become shorter"));
  }
  return count;
}

void copyBytes(const LauncherFile& launcher, const Stretch& stretch, const std::string& path,
               std::FILE* output) {
  char chunk[65536];
  (void)fseeko(launcher.file.get(), stretch.begin, SEEK_SET);
  for (std::int64_t rest = stretch.size; rest > 0;) {
    DeferredSignals::throwIfCame();
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(rest, sizeof chunk));
    const std::size_t count = readBytes(launcher.file.get(), chunk, wanted, stretch.label);
    if (std::fwrite(chunk, 1, count, output) != count) {
      failToWrite(path, errno);
    }
    rest -= static_cast<std::int64_t>(count);
  }
}

// A new folder's files, under the names that they will have.
class FolderWriter {
 public:
  explicit FolderWriter(const std::string& folder) : m_folder(folder), m_output(folder) {}

  // `write` gets the open file and the name for messages.
  template <class Write>
  void add(const std::string& name, bool executable, Write write) {
    const std::string shown = (fs::path(m_folder) / name).string();
    const fs::path path = pathOf(name);
    FilePtr file = openFile(path.c_str(), "wbx");
    if (file == nullptr) {
      failToWrite(shown, errno);
    }
    write(file.get(), shown);
    if (std::fclose(file.release()) != 0) {
      failToWrite(shown, errno);
    }
    if (executable) {
      const auto execute = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
      fs::permissions(path, execute, fs::perm_options::add);
    }
  }
  void copy(const LauncherFile& launcher, const Stretch& stretch, const std::string& name,
            bool executable) {
    add(name, executable, [&](std::FILE* file, const std::string& shown) {
      copyBytes(launcher, stretch, shown, file);
    });
  }
  fs::path pathOf(const std::string& name) const { return fs::path(m_output.staging()) / name; }
  void commit() { m_output.commit(); }

 private:
  const std::string& m_folder;
  OutputFolder m_output;
};

// --- What makes the setup again ---

// `wanted`, or with a number behind it when a file has that name: "stub", "stub-2", "stub-3".
std::string freeName(const LauncherFile& launcher, const std::string& stem,
                     const std::string& ending) {
  std::set<std::string> names;
  for (long i = 0; i < launcher.index.size(); ++i) {
    names.insert(launcher.index.at(i)->getFileName().c_str());
  }
  std::string name = stem + ending;
  for (int number = 2; names.count(name) != 0; ++number) {
    name = stem;
    name.append("-").append(std::to_string(number)).append(ending);
  }
  return name;
}

std::string stubName(const LauncherFile& launcher) {
  const auto stub = recognizeStub(launcher);
  const bool isName = stub && findNameFault(stub->kind).empty();
  return freeName(launcher, isName ? stub->kind : "stub", "");
}

// A warning when `manifest` does not make the same bytes again; of a file that is not damaged.
std::vector<std::string> findLosses(const LauncherFile& launcher, const std::string& staging,
                                    const std::string& folder, const std::string& manifest,
                                    bool isWhole) {
  const long foreign = findForeignName(launcher);
  if (foreign >= 0) {
    return {place(foreign, *launcher.index.at(foreign)) +
            ": its name is not UTF-8, so the manifest does not hold it right"};
  }
  try {
    loadManifest((fs::path(staging) / manifest).string(), {});
  } catch (const AuthoringError& e) {
    const std::string text = e.what();  // begins with the manifest's path
    return {(fs::path(folder) / manifest).string() + " cannot be packed as it stands" +
            text.substr((fs::path(staging) / manifest).string().size())};
  }
  std::vector<std::string> losses;
  if (!recognizeStub(launcher)) {
    losses.push_back("the stub is none of ours; pack it again with --any-stub");
  }
  if (launcher.digests.state == DigestState::kNone) {
    losses.push_back("the setup has no digests; packed again it has the same files, and digests");
  } else if (isWhole && !hasOurLayout(launcher)) {
    losses.push_back(
        "another program made this setup; packed again it has the same files, but not the same "
        "bytes");
  }
  return losses;
}

void addManifest(const LauncherFile& launcher, FolderWriter& writer, ExtractResult& result) {
  result.stub = stubName(launcher);
  writer.copy(launcher, {"the stub", 0, sizeOfStub(launcher)}, result.stub, true);
  result.manifest = freeName(launcher, "manifest", ".json");
  const std::string text = unpackedManifest(launcher, result.stub);
  writer.add(result.manifest, false, [&text](std::FILE* file, const std::string& shown) {
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size()) {
      failToWrite(shown, errno);
    }
  });
}

}  // namespace

ExtractResult extractFiles(const LauncherFile& launcher, const std::string& folder,
                           const Selection& selection) {
  const std::vector<long> positions = select(launcher, selection);
  checkEntries(launcher, positions);
  FolderWriter writer(folder);
  for (const long i : positions) {
    const FileIndexEntry& entry = *launcher.index.at(i);
    writer.copy(launcher, stretchOf(launcher, i), entry.getFileName().c_str(),
                isProgramType(entry.getFileType()));
  }
  ExtractResult result;
  result.files = positions.size();
  result.warnings = findDamage(launcher);
  if (selection.isAll()) {
    addManifest(launcher, writer, result);
    const std::string staging = writer.pathOf("").parent_path().string();
    const std::vector<std::string> losses =
        findLosses(launcher, staging, folder, result.manifest, result.warnings.empty());
    result.warnings.insert(result.warnings.end(), losses.begin(), losses.end());
  }
  launcher.state.checkUnchanged(launcher.file.get());
  writer.commit();
  return result;
}

void extractFile(const LauncherFile& launcher, std::FILE* output, const Selection& selection) {
  const std::vector<long> positions = select(launcher, selection);
  if (positions.size() != 1) {
    throw AuthoringError(
        "standard output takes one file; name it with --file, and with --id or --type when several "
        "have that name");
  }
  checkInside(launcher, positions.front());
  copyBytes(launcher, stretchOf(launcher, positions.front()), "standard output", output);
  launcher.state.checkUnchanged(launcher.file.get());
}

}  // namespace authoring
