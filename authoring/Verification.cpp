#include "authoring/Verification.h"

#include <algorithm>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/DamageLook.h"
#include "authoring/FileBytes.h"
#include "authoring/Listing.h"
#include "authoring/SafeText.h"
#include "authoring/SeekableInput.h"
#include "authoring/Sha256.h"
#include "authoring/StubRecognition.h"
#include "tagfile/StreamUtils.h"

namespace authoring {
namespace {

using Faults = std::vector<std::string>;

constexpr const char* kEndDamaged =
    "its end is damaged: the digests, or what tells where the file index lies";

struct Stretch {
  std::string name;
  std::int64_t begin = 0;
  std::int64_t end = 0;
};

std::string describe(const Stretch& stretch) {
  return stretch.name + " is damaged (bytes " + std::to_string(stretch.begin) + " to " +
         std::to_string(stretch.end - 1) + ")";
}

bool hasDigest(std::FILE* file, const Stretch& stretch, const std::string& digest) {
  constexpr std::int64_t kChunk = 262144;
  Sha256 sum;
  for (std::int64_t at = stretch.begin; at < stretch.end; at += kChunk) {
    sum.add(bytesAt(file, at, std::min(kChunk, stretch.end - at)));
  }
  return sum.finish() == digest;
}

// The place of the index that an intact end tells.
std::int64_t indexOffsetOf(std::FILE* file, std::int64_t size) {
  const std::string trailer = bytesAt(file, size - kTrailerSize, kTrailerSize);
  return convertToLong(reinterpret_cast<const unsigned char*>(trailer.data()));
}

// --- By digests ---

// Stub and files, as the index tells them.
std::vector<Stretch> stretchesOf(const LauncherFile& launcher) {
  std::vector<Stretch> stretches = {{"the launcher program", 0, launcher.indexOffset}};
  for (long i = 0; i < launcher.index.size(); ++i) {
    const FileIndexEntry& entry = *launcher.index.at(i);
    const std::int64_t begin = entry.getOffsetToBytes();
    if (i == 0) {
      stretches.front().end = begin;
    }
    stretches.push_back(
        {safeText(entry.getFileName().view()), begin, begin + entry.getFileLength()});
  }
  return stretches;
}

// False when the writer did not lay them out like this. It puts at most a newline between two.
bool areOneBehindAnother(const std::vector<Stretch>& stretches, std::int64_t end) {
  std::int64_t next = end;
  for (auto stretch = stretches.rbegin(); stretch != stretches.rend(); ++stretch) {
    if (stretch->begin > stretch->end || stretch->end > next || stretch->end < next - 1) {
      return false;
    }
    next = stretch->begin;
  }
  return next == 0;
}

Faults damageOfPieces(const LauncherFile& launcher) {
  std::FILE* const file = launcher.file.get();
  const std::vector<Stretch> stretches = stretchesOf(launcher);
  if (stretches.size() + 1 != launcher.digests.pieces.size() ||
      !areOneBehindAnother(stretches, launcher.indexOffset)) {
    return {"its files lie otherwise than its digests tell; another program has changed it"};
  }
  Faults faults;
  for (std::size_t i = 0; i < stretches.size(); ++i) {
    const Stretch& stretch = stretches[i];
    const std::int64_t next =
        i + 1 < stretches.size() ? stretches[i + 1].begin : std::int64_t{launcher.indexOffset};
    if (!hasDigest(file, stretch, launcher.digests.pieces[i])) {
      faults.push_back(describe(stretch));
    }
    if (next > stretch.end && bytesAt(file, stretch.end, 1) != "\n") {
      faults.push_back("the byte behind " + stretch.name + " is damaged (byte " +
                       std::to_string(stretch.end) + ")");
    }
  }
  return faults;
}

// Of an index that need not be readable.
Faults damageOfIndex(std::FILE* file, std::int64_t size, const DigestBlock& digests) {
  if (digests.missing != 0) {
    return {describeShift(file, size, digests.missing)};
  }
  const Stretch index{"the file index", indexOffsetOf(file, size), digests.offset};
  const bool isThere = index.begin >= 0 && index.begin < index.end;
  if (!isThere) {
    return {kEndDamaged};
  }
  return hasDigest(file, index, digests.pieces.back())
             ? Faults{}
             : Faults{describe(index) + ", so that its files cannot be told apart"};
}

// --- By its look ---

Faults damageOfPlaces(const LauncherFile& launcher) {
  Faults faults;
  std::int64_t first = launcher.indexOffset;
  for (long i = 0; i < launcher.index.size(); ++i) {
    const FileIndexEntry& entry = *launcher.index.at(i);
    first = std::min<std::int64_t>(first, entry.getOffsetToBytes());
    if (!isInside(launcher, entry)) {
      faults.push_back("the bytes of " + safeText(entry.getFileName().view()) +
                       " lie outside the file");
    }
  }
  const auto end = endOfProgram(launcher.file.get());
  if (faults.empty() && end && *end > first) {
    faults.push_back(
        "bytes are missing in front of its files, or were put in: the launcher program reaches to "
        "byte " +
        std::to_string(*end) + ", and the first file begins at byte " + std::to_string(first));
  }
  return faults;
}

// Of a launcher file without intact digests.
Faults damageByLook(const LauncherFile& launcher, const std::string& path) {
  if (!launcher.hasTrailer) {
    const bool isCutProgram = endOfProgram(launcher.file.get()).value_or(0) > launcher.size;
    if (!isCutProgram) {
      requireLauncher(launcher, path);
    }
    return {findLostEnd(launcher.file.get(), launcher.size)};
  }
  return damageOfPlaces(launcher);
}

std::string summaryOf(const LauncherFile& launcher) {
  const auto stub = recognizeStub(launcher);
  return countOf(launcher.index.size(), "file") + ", " + countOf(launcher.size, "byte") +
         (stub ? ", stub " + describeStub(*stub) : "");
}

Verification damaged(Faults faults) {
  return {Soundness::kDamaged, "", std::move(faults)};
}

Verification unknown(const LauncherFile& launcher) {
  const bool isNewer = launcher.digests.state == DigestState::kNewer;
  return {Soundness::kUnknown,
          summaryOf(launcher),
          {isNewer ? "has digests of a later form; use a later corvane-pack"
                   : "has no digests: an older corvane-pack or another program packed it, and "
                     "whether its bytes were changed cannot be told"}};
}

// Empty when the index can be read.
std::string findIndexFault(const std::string& path) {
  try {
    (void)readLauncherFile(path);
    return "";
  } catch (const AuthoringError& e) {
    const std::string label = inputLabel(path) + ": ";
    const std::string text = e.what();
    return text.starts_with(label) ? text.substr(label.size()) : text;
  }
}

Verification verifyByLook(const std::string& path) {
  if (const std::string fault = findIndexFault(path); !fault.empty()) {
    return damaged({fault});
  }
  const LauncherFile launcher = readLauncherFile(path);
  const Faults faults = launcher.digests.state == DigestState::kDamaged
                            ? Faults{kEndDamaged}
                            : damageByLook(launcher, path);
  return faults.empty() ? unknown(launcher) : damaged(faults);
}

}  // namespace

Verification verifySetup(const std::string& path) {
  const SeekableInput input = openSeekable(path);
  std::FILE* const file = input.file.get();
  const std::int64_t size = fseeko(file, 0, SEEK_END) == 0 ? ftello(file) : 0;
  if (const std::string transfer = findTextTransfer(file); !transfer.empty()) {
    return damaged({transfer});
  }
  const DigestBlock digests = findDigests(file, size);
  if (digests.state == DigestState::kDamaged) {
    return damaged({kEndDamaged});
  }
  if (digests.state != DigestState::kIntact) {
    return verifyByLook(path);
  }
  if (const Faults faults = damageOfIndex(file, size, digests); !faults.empty()) {
    return damaged(faults);
  }
  const LauncherFile launcher = readLauncherFile(path);
  const Faults faults = damageOfPieces(launcher);
  return faults.empty() ? Verification{Soundness::kSound, summaryOf(launcher), {}}
                        : damaged(faults);
}

std::vector<std::string> findDamage(const LauncherFile& launcher) {
  switch (launcher.digests.state) {
    case DigestState::kDamaged:
      return {kEndDamaged};
    case DigestState::kIntact: {
      const Faults faults = damageOfIndex(launcher.file.get(), launcher.size, launcher.digests);
      return faults.empty() ? damageOfPieces(launcher) : faults;
    }
    default:
      return {};
  }
}

}  // namespace authoring
