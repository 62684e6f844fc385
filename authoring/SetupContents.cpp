#include "authoring/SetupContents.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/FileLook.h"
#include "authoring/Installation.h"
#include "authoring/LauncherFileReader.h"
#include "authoring/SeekableInput.h"
#include "authoring/Verification.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

// --- Tag files ---

struct ReasonRow {
  const char* reason;  // its beginning
  const char* advice;
};
const ReasonRow kReasons[] = {
    {"missing colon at the end of the tag name", "write NAME: value; there are no comments here"},
    {"expected double quote to end argument near ",
     "close the quote; a double quote inside the value is written twice"},
    {"missing /: tag completer", "end the block that begins here with a line /:"},
    {"invalid tag format", "write a value, or leave out the tag"},
};

std::string adviceFor(const std::string& reason) {
  for (const ReasonRow& row : kReasons) {
    if (reason.starts_with(row.reason)) {
      return row.advice;
    }
  }
  return "";
}

std::string asReason(std::string text) {
  if (text.ends_with('.')) {
    text.pop_back();
  }
  if (!text.empty()) {
    text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  }
  return text;
}

// Reports the error of the launcher's parser. "Syntax error in NAME at line N ==> REASON." tells
// the line; other errors are in the line that was read last.
void reportUnparsable(Findings& findings, const SetupFile& file, const std::string& error) {
  constexpr std::string_view kLine = " at line ";
  constexpr std::string_view kArrow = " ==> ";
  const std::size_t line = error.rfind(kLine);
  const std::size_t arrow = error.rfind(kArrow);
  Place place = {file.label, file.sources.lastLine().number};
  std::string reason = asReason(error);
  if (line != std::string::npos && arrow != std::string::npos && line < arrow) {
    (void)convertToLong(error.substr(line + kLine.size()).c_str(), place.line);
    reason = asReason(error.substr(arrow + kArrow.size()));
  }
  findings.error(place, reason, "the launcher cannot load the file", adviceFor(reason));
}

// Loads the tag file with `load`, or reports why it does not parse.
template <class Load>
void loadTagFile(Findings& findings, SetupFile& file, Load load) {
  try {
    load();
  } catch (const std::exception& e) {
    file.tagFile = nullptr;
    reportUnparsable(findings, file, e.what());
  }
}

// --- From a manifest ---

void loadTagFileOf(SetupFile& file, const std::string& path) {
  const FilePtr stream = openFile(path.c_str(), "r");
  if (stream == nullptr) {
    throw AuthoringError(std::string("cannot be read: ") + std::strerror(errno));
  }
  file.tagFile = std::make_unique<TagFile>();
  file.tagFile->load(stream.get(), path.c_str(), 0, -1, &file.sources);
}

void addFile(Setup& setup, const ManifestFile& source) {
  SetupFile file;
  file.type = source.type;
  file.id = source.id;
  file.name = source.name;
  file.label = source.path;
  file.entry = {setup.label, source.line};
  file.decompressed = source.decompressed;
  file.isStored = false;
  file.isReadable = !source.path.empty();
  file.payload = payloadOf(source.path);
  if (file.isReadable && isTagFileType(source.type)) {
    loadTagFile(setup.findings, file, [&] { loadTagFileOf(file, source.path); });
  } else if (file.isReadable && file.payload.open() == nullptr) {
    file.isReadable = false;
    setup.findings.error(file.at(), std::string("cannot be read: ") + std::strerror(errno),
                         "the setup cannot be packed", "");
  }
  setup.files.push_back(std::move(file));
}

// --- From a launcher file ---

void loadTagFileOf(SetupFile& file, TagFileLoader& loader, FileIndexEntry& entry) {
  try {
    loader.load(entry, &file.sources);
    file.tagFile = entry.takeTagFile();
  } catch (const LauncherException&) {
    if (entry.getTagFile() != nullptr) {
      file.sources = {};  // it parses, but there is too much text in all: no line is at fault
    }
    throw;
  }
}

Payload payloadOf(const FileIndexEntry& entry, const std::shared_ptr<std::FILE>& launcher) {
  return {"", launcher, entry.getOffsetToBytes(), entry.getFileLength()};
}

std::optional<DecompressedSize> sizesOf(const FileIndexEntry& entry) {
  if (!entry.isCompressed()) {
    return std::nullopt;
  }
  return DecompressedSize{entry.getDecompressedFileCount(), entry.getDecompressedSize()};
}

SetupFile asSetupFile(const FileIndexEntry& entry, std::size_t position) {
  SetupFile file;
  file.type = entry.getFileType();
  file.id = entry.getFileId();
  file.name = entry.getFileName().c_str();
  file.label = file.name.empty() ? "entry " + std::to_string(position) : file.name;
  file.entry = {file.label, 0};
  file.decompressed = sizesOf(entry);
  return file;
}

void addFiles(Setup& setup, const LauncherFile& launcher,
              const std::shared_ptr<std::FILE>& stream) {
  TagFileLoader loader(stream.get());
  for (long i = 0; i < launcher.index.size(); ++i) {
    FileIndexEntry& entry = *launcher.index.at(i);
    SetupFile file = asSetupFile(entry, setup.files.size());
    file.isReadable = isInside(launcher, entry);
    if (!file.isReadable) {
      setup.findings.error(file.at(), "its bytes lie outside the launcher file",
                           "the file was cut, or made by a broken tool", "pack the setup again");
    } else if (entry.isTagFile()) {
      loadTagFile(setup.findings, file, [&] { loadTagFileOf(file, loader, entry); });
    } else {
      file.payload = payloadOf(entry, stream);
    }
    setup.files.push_back(std::move(file));
  }
}

Setup loadFromLauncher(LauncherFile launcher, const std::string& label) {
  Setup setup;
  setup.label = label;
  setup.purpose = launcher.purpose;
  setup.stubMark = recognizeStub(launcher);
  for (const std::string& fault : findDamage(launcher)) {
    setup.findings.error({label, 0}, fault, "it is not as it was packed",
                         "copy the setup again, or pack it again");
  }
  const std::shared_ptr<std::FILE> stream = std::move(launcher.file);
  const Payload whole = {"", stream, 0, launcher.size};
  setup.stub = lookAtProgram(whole.read(0, kProgramBytes));
  addFiles(setup, launcher, stream);
  return setup;
}

// Empty when there is none; nothing can be packed then, but checked.
std::string defaultStub() {
  try {
    return findDefaultStub();
  } catch (const AuthoringError&) {
    return "";
  }
}

}  // namespace

const SetupFile* Setup::findType(std::int32_t type) const {
  const auto file = std::find_if(files.begin(), files.end(),
                                 [type](const SetupFile& f) { return f.type == type; });
  return file == files.end() ? nullptr : &*file;
}

const SetupFile* Setup::findId(std::int32_t id) const {
  const auto file =
      std::find_if(files.begin(), files.end(), [id](const SetupFile& f) { return f.id == id; });
  return file == files.end() ? nullptr : &*file;
}

Setup loadSetup(const Manifest& manifest, const std::string& stub) {
  Setup setup;
  setup.label = manifest.path;
  setup.isRead = manifest.isRead;
  setup.purpose = manifest.purpose;
  setup.stub = lookAtProgram(payloadOf(stub).read(0, kProgramBytes));
  for (const ManifestFile& file : manifest.files) {
    addFile(setup, file);
  }
  return setup;
}

Setup loadSetup(const std::string& path, const std::vector<std::string>& baseFolders) {
  LauncherFile launcher = readLauncherFile(path);
  if (launcher.hasTrailer || recognizeStub(launcher)) {
    return loadFromLauncher(std::move(launcher), inputLabel(path));
  }
  const std::string bytes = firstBytes(launcher.file.get());
  if (!looksLikeManifest(bytes)) {
    throw AuthoringError(inputLabel(path) + " is no launcher file and no manifest; it looks like " +
                         lookOf(bytes));
  }
  Findings findings;
  const Manifest manifest = loadManifest(readManifest(launcher.file.get(), path, launcher.isStream),
                                         baseFolders, &findings);
  Setup setup = loadSetup(manifest, manifest.stub.empty() ? defaultStub() : manifest.stub);
  setup.findings.add(findings);
  return setup;
}

}  // namespace authoring
