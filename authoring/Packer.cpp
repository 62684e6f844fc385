#include "authoring/Packer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/DigestCollector.h"
#include "authoring/FileLook.h"
#include "authoring/Installation.h"
#include "authoring/LauncherFileReader.h"
#include "authoring/LauncherFileWriter.h"
#include "authoring/OutputFile.h"
#include "authoring/OutputTarget.h"
#include "authoring/SeekableInput.h"
#include "authoring/SourceFile.h"
#include "authoring/StubRecognition.h"
#include "authoring/SumFile.h"
#include "tagfile/TagFile.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

namespace fs = std::filesystem;

void checkStub(const std::string& path, bool anyStub) {
  SourceFile(path).checkUnchanged();  // a file it must be
  const LauncherFile stub = readLauncherFile(path);
  if (stub.hasTrailer) {
    throw AuthoringError(path +
                         " carries files already; a stub is the bare launcher, as it is built");
  }
  if (!anyStub && !recognizeStub(stub)) {
    throw AuthoringError(path + " is no stub of ours: it looks like " + lookOf(stub.file.get()) +
                         "; name a bare launcher with --stub, or add --any-stub");
  }
}

void refuseToOverwrite(const std::string& output, const std::string& input) {
  std::error_code error;
  if (fs::equivalent(output, input, error)) {
    throw AuthoringError(output + " is one of the inputs (" + input +
                         "); name another file with --output");
  }
}

void checkOutput(const std::string& output, const PackInputs& inputs) {
  refuseToOverwrite(output, inputs.stub);
  refuseToOverwrite(output, inputs.manifest.path);
  for (const ManifestFile& file : inputs.manifest.files) {
    refuseToOverwrite(output, file.path);
  }
}

std::int64_t sizeOf(const std::string& path) {
  std::error_code error;
  const auto size = fs::file_size(path, error);
  if (error) {
    throw AuthoringError(path + " cannot be read: " + error.message());
  }
  return static_cast<std::int64_t>(size);
}

// Checked before anything is written; the writer checks again, as a file may grow meanwhile.
void checkSize(const std::string& stub, const Manifest& manifest) {
  std::int64_t total = sizeOf(stub);
  std::string largest = stub;
  std::int64_t largestSize = total;
  for (const ManifestFile& file : manifest.files) {
    const std::int64_t size = sizeOf(file.path);
    total += size;
    if (size > largestSize) {
      largest = file.path;
      largestSize = size;
    }
  }
  if (total > kMaxLauncherFileSize) {
    throw AuthoringError(
        "the launcher file would be larger than 2147483647 bytes, the most that its "
        "index can describe (stub and files together: " +
        std::to_string(total) + " bytes); leave out or shrink files, the largest is " + largest);
  }
}

PackResult write(const std::string& stub, const Manifest& manifest, std::FILE* output,
                 bool withSum) {
  DigestCollector digests(withSum);
  LauncherFileWriter writer(output, &digests);
  const SourceFile bareLauncher(stub);
  writer.addStub(bareLauncher.stream(), stub);
  bareLauncher.checkUnchanged();
  for (const ManifestFile& file : manifest.files) {
    const SourceFile source(file.path);
    writer.addFile({file.type, file.id, 0, 0, file.name, file.decompressed}, source.stream(),
                   file.path);
    source.checkUnchanged();
  }
  const std::int64_t size = writer.finish(manifest.purpose);
  return {manifest.files.size(), size, withSum ? hexOf(digests.wholeFile()) : "", ""};
}

PackResult writeToStream(const std::string& stub, const Manifest& manifest) {
  if (isatty(STDOUT_FILENO) != 0) {
    throw AuthoringError("standard output is a terminal; name a file with --output");
  }
  const PackResult result = write(stub, manifest, stdout, false);
  if (std::fflush(stdout) != 0) {
    throw AuthoringError(std::string("standard output cannot be written: ") + std::strerror(errno));
  }
  return result;
}

// Else that is noticed when the file gets its name, and the setup has its own already.
void checkNameOfSum(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0 && errno == ENAMETOOLONG) {
    throw AuthoringError(path + " cannot be written: " + std::strerror(ENAMETOOLONG) +
                         "; shorten the name, or add --no-sha256");
  }
}

// Of the file that `output` stands for. An earlier sum would not fit any more, and is gone, too.
PackResult writeToFile(const PackInputs& inputs, const std::string& output, bool withSum) {
  const std::string target = findOutputTarget(output);
  const std::string sumFile = withSum ? findOutputTarget(sumFileOf(target)) : sumFileOf(target);
  checkOutput(sumFile, inputs);
  checkOutput(sumFileOf(output), inputs);  // beside a link, too, an earlier sum goes
  OutputFile file(target);
  std::optional<OutputFile> sum;
  if (withSum) {
    checkNameOfSum(sumFile);
    sum.emplace(sumFile, OutputKind::kText);
  }
  PackResult result = write(inputs.stub, inputs.manifest, file.stream(), withSum);
  if (sum) {
    std::fputs(sumLine(result.sha256, fs::path(target).filename().string()).c_str(), sum->stream());
    result.sumFile = sumFileOf(target);
  }
  commitWithSum(file, sum ? &*sum : nullptr, sumFile, sumFileOf(output));
  return result;
}

std::string chooseStub(const PackOptions& options, const Manifest& manifest) {
  if (!options.stub.empty()) {
    return options.stub;
  }
  if (!options.machine.empty()) {
    return findStubFor(options.machine);
  }
  return manifest.stub.empty() ? findDefaultStub() : manifest.stub;
}

}  // namespace

PackInputs loadPackInputs(const PackOptions& options, Findings* findings) {
  PackInputs inputs;
  inputs.manifest = loadManifest(options.manifest, options.baseFolders, findings);
  inputs.stub = chooseStub(options, inputs.manifest);
  return inputs;
}

PackResult packLauncher(const PackOptions& options, const PackInputs& inputs) {
  const bool toStream = options.output == kStandardStream;
  if (!toStream) {
    (void)findOutputTarget(options.output);
  }
  checkStub(inputs.stub, options.anyStub);
  checkOutput(options.output, inputs);
  checkSize(inputs.stub, inputs.manifest);
  return toStream ? writeToStream(inputs.stub, inputs.manifest)
                  : writeToFile(inputs, options.output, options.sumFile);
}

PackResult packLauncher(const PackOptions& options) {
  const PackInputs inputs = loadPackInputs(options);
  for (const ManifestFile& file : inputs.manifest.files) {
    if (isTagFileType(file.type)) {
      requireTagFile(file.path);
    }
  }
  return packLauncher(options, inputs);
}

void requireTagFile(const std::string& path) {
  try {
    const TagFile tagFile(path.c_str());
  } catch (const LauncherException& e) {
    const std::string text = e.what();
    const bool namesFile = text.find(path) != std::string::npos;
    throw AuthoringError(namesFile ? text : path + ": " + text);
  }
}

}  // namespace authoring
