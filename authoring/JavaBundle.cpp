#include "authoring/JavaBundle.h"

#include <archive.h>
#include <archive_entry.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "authoring/ArchiveUnpacker.h"
#include "authoring/AuthoringError.h"
#include "authoring/OutputFile.h"
#include "authoring/OutputFolder.h"
#include "authoring/OutputTarget.h"
#include "authoring/SourceFile.h"
#include "tagfile/StreamUtils.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

constexpr const char* kJava = "bin/java";
constexpr const char* kMacHome = "Contents/Home";
constexpr const char* kJVMFileName = "jvm";
constexpr std::time_t kFixedTime = 315532800;  // 1980: the bytes tell nothing of the day

// The last member: it is there when all others are.
constexpr const char* kJVMFile = R"(DESC: Java
JVM_EXE: bin/java
JVM_PROPERTIES: java.specification.version = ...
CLASSPATH: "-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: "="
)";

// {N} is the names that are unpacked, {B} the first byte behind the text.
constexpr const char* kProgram = R"(#!/bin/sh
# Unpacks a Java into the current folder, with the file "jvm" that describes it.
# Nothing that is there is overwritten, and after a failure nothing is left.
set -- {N}
for name; do
    if [ -e "$name" ] || [ -L "$name" ]; then
        echo "$PWD/$name is there already; nothing was unpacked." >&2
        exit 1
    fi
done
trap 'rm -rf -- "$@"; exit 1' HUP INT TERM
tail -c +{B} "$0" | gzip -dc | tar -xof -
[ -f jvm ] && [ -x bin/java ] && exit 0
rm -rf -- "$@"
echo "The Java was not unpacked whole." >&2
exit 1
)";
constexpr std::size_t kOffsetDigits = 8;

using Writer = std::unique_ptr<archive, decltype(&archive_write_free)>;
using Entry = std::unique_ptr<archive_entry, decltype(&archive_entry_free)>;

bool isJavaHome(const fs::path& folder) {
  const fs::path java = folder / kJava;
  std::error_code error;
  return fs::is_regular_file(java, error) && access(java.c_str(), X_OK) == 0;
}

// The folder itself, or the one folder in it, as archives have it.
fs::path findJavaHome(const fs::path& folder, const std::string& source) {
  std::vector<fs::path> folders = {folder};
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.is_directory() && !entry.is_symlink()) {
      folders.push_back(entry.path());
    }
  }
  std::sort(folders.begin() + 1, folders.end());
  for (const fs::path& each : folders) {
    for (const fs::path& home : {each, each / kMacHome}) {
      if (isJavaHome(home)) {
        return home;
      }
    }
  }
  throw AuthoringError(source + " holds no program " + kJava +
                       "; name the folder of a JDK, an image of jlink, or an archive of one");
}

std::string quoted(const std::string& name) {
  std::string word = "'";
  for (const char c : name) {
    word += c == '\'' ? "'\\''" : std::string(1, c);
  }
  return word + "'";
}

void replaceMark(std::string& text, const std::string& mark, const std::string& by) {
  text.replace(text.find(mark), mark.size(), by);
}

// The program's text, up to the archive behind it.
std::string programFor(const std::vector<fs::path>& names) {
  std::string words;
  for (const fs::path& name : names) {
    if (!name.has_parent_path()) {
      words += quoted(name.string()) + " ";
    }
  }
  std::string program = kProgram;
  words += kJVMFileName;
  constexpr std::size_t kBothMarks = 6;
  const std::size_t begin = program.size() - kBothMarks + words.size() + kOffsetDigits + 1;
  std::array<char, kOffsetDigits + 1> digits{};
  std::snprintf(digits.data(), digits.size(), "%08zu", begin);
  replaceMark(program, "{B}", digits.data());  // first: a name may hold its mark
  replaceMark(program, "{N}", words);
  return program;
}

// Sorted: a folder stands before what is in it.
std::vector<fs::path> namesIn(const fs::path& home) {
  std::vector<fs::path> names;
  for (const auto& entry : fs::recursive_directory_iterator(home)) {
    names.push_back(entry.path().lexically_relative(home));
  }
  std::sort(names.begin(), names.end());
  return names;
}

void checkWritten(archive* writer, bool good, const std::string& output) {
  if (!good) {
    throw AuthoringError(output + " cannot be written: " + archive_error_string(writer));
  }
}

class Bundle {
 public:
  Bundle(std::FILE* stream, std::string output)
      : m_output(std::move(output)), m_writer(archive_write_new(), &archive_write_free) {
    archive_write_set_format_gnutar(m_writer.get());
    archive_write_add_filter_gzip(m_writer.get());
    archive_write_set_filter_option(m_writer.get(), "gzip", "timestamp", nullptr);
    archive_write_set_bytes_in_last_block(m_writer.get(), 1);  // nothing behind its end
    checkWritten(m_writer.get(), archive_write_open_FILE(m_writer.get(), stream) == ARCHIVE_OK,
                 m_output);
  }

  std::int64_t count() const { return m_count; }

  void addFile(const std::string& name, const fs::path& path) {
    const SourceFile source(path.string());
    const bool isProgram = access(path.c_str(), X_OK) == 0;
    begin(name, AE_IFREG, isProgram ? 0755 : 0644, source.size(), nullptr);
    std::array<char, 65536> block{};
    std::size_t length = 0;
    while ((length = std::fread(block.data(), 1, block.size(), source.stream())) > 0) {
      write(block.data(), length);
    }
    source.checkUnchanged();
    ++m_count;
  }

  void addText(const std::string& name, const std::string& text) {
    begin(name, AE_IFREG, 0644, static_cast<std::int64_t>(text.size()), nullptr);
    write(text.data(), text.size());
  }

  void addFolder(const std::string& name) { begin(name, AE_IFDIR, 0755, 0, nullptr); }

  void addLink(const std::string& name, const std::string& target) {
    begin(name, AE_IFLNK, 0777, 0, target.c_str());
  }

  void end() {
    checkWritten(m_writer.get(), archive_write_close(m_writer.get()) == ARCHIVE_OK, m_output);
  }

 private:
  void begin(const std::string& name, unsigned type, unsigned mode, std::int64_t size,
             const char* link) {
    const Entry entry(archive_entry_new(), &archive_entry_free);
    archive_entry_set_pathname(entry.get(), name.c_str());
    archive_entry_set_filetype(entry.get(), type);
    archive_entry_set_perm(entry.get(), mode);
    archive_entry_set_size(entry.get(), size);
    archive_entry_set_mtime(entry.get(), kFixedTime, 0);
    if (link != nullptr) {
      archive_entry_set_symlink(entry.get(), link);
    }
    checkWritten(m_writer.get(), archive_write_header(m_writer.get(), entry.get()) == ARCHIVE_OK,
                 m_output);
  }

  void write(const char* bytes, std::size_t length) {
    checkWritten(
        m_writer.get(),
        archive_write_data(m_writer.get(), bytes, length) == static_cast<la_ssize_t>(length),
        m_output);
  }

  std::string m_output;
  Writer m_writer;
  std::int64_t m_count = 0;
};

bool isBelow(const fs::path& path, const fs::path& home) {
  return *path.lexically_relative(home).begin() != "..";
}

// A link within the Java stays one. Of a file elsewhere, as Linux distributions have it, the bytes
// are taken; a link that leads nowhere is left out.
void addLinked(Bundle& bundle, const fs::path& home, const fs::path& name) {
  std::error_code error;
  const fs::path path = home / name;
  const fs::path target = fs::canonical(path, error);
  const fs::path text = fs::read_symlink(path);
  if (error) {
    return;
  }
  if (text.is_relative() && isBelow(target, fs::canonical(home))) {
    bundle.addLink(name.string(), text.string());
  } else if (fs::is_regular_file(target)) {
    bundle.addFile(name.string(), target);
  } else {
    throw AuthoringError(path.string() + " is a link to a folder outside of the Java; make an " +
                         "image of it with jlink");
  }
}

void addMember(Bundle& bundle, const fs::path& home, const fs::path& name) {
  const fs::path path = home / name;
  const fs::file_status status = fs::symlink_status(path);
  if (fs::is_symlink(status)) {
    addLinked(bundle, home, name);
  } else if (fs::is_directory(status)) {
    bundle.addFolder(name.string());
  } else {
    bundle.addFile(name.string(), path);  // says so when it is no file
  }
}

std::int64_t bundleHome(const fs::path& home, const std::string& output) {
  const std::vector<fs::path> names = namesIn(home);
  if (std::find(names.begin(), names.end(), kJVMFileName) != names.end()) {
    throw AuthoringError((home / kJVMFileName).string() +
                         " has the name of the file that the installer adds; remove it");
  }
  OutputFile file(findOutputTarget(output));
  const std::string program = programFor(names);
  if (std::fwrite(program.data(), 1, program.size(), file.stream()) != program.size() ||
      std::fflush(file.stream()) != 0) {
    throw AuthoringError(output + " cannot be written: " + std::strerror(errno));
  }
  Bundle bundle(file.stream(), output);
  for (const fs::path& name : names) {
    addMember(bundle, home, name);
  }
  bundle.addText(kJVMFileName, kJVMFile);
  bundle.end();
  file.commit();
  return bundle.count();
}

}  // namespace

std::int64_t bundleJava(const std::string& source, const std::string& output) {
  std::error_code error;
  if (fs::is_directory(source, error)) {
    return bundleHome(findJavaHome(source, source), output);
  }
  if (!fs::is_regular_file(source, error)) {
    throw AuthoringError("there is no file or folder " + source +
                         "; name a JDK, an image of jlink, or an archive of one");
  }
  const OutputFolder unpacked(output + ".unpacked");  // never committed: it goes with us
  unpackArchive(source, unpacked.staging());
  return bundleHome(findJavaHome(unpacked.staging(), source), output);
}

}  // namespace authoring
