// The process entry: arguments and the launcher's own path in, exit status out.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <new>

#include "archive/StubMark.h"
#include "launcher/Launcher.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"
#include "util/MemoryReserve.h"
#include "util/SString.h"
#include "util/StringDeque.h"

namespace {

constexpr int kFailure = 255;
constexpr std::size_t kCurrentDirCapacity = 1024;
// A wizard that ends with this status, in a launcher of a quiet purpose, has shown its error
// itself.
constexpr std::int32_t kQuietFailure = 232;

constexpr const char* kBorrowedRights =
    "A launcher does not run with the rights of another user or group (set-user-id, set-group-id).";
constexpr const char* kNoMemory = "The launcher has run out of memory.";

// For corvane-pack. `main` reads it, so that neither compiler nor linker removes it.
constexpr volatile char kStubMark[] =
    CORVANE_STUB_MARK(CORVANE_STUB_KIND, CORVANE_VERSION, CORVANE_STUB_ENCODING, CORVANE_MACHINE);

// The launcher's path as the user started it, made absolute by the current directory.
// QUIRK(untold-directory-is-root): when the current directory cannot be found out, or is longer
// than the buffer, it is taken as "/".
SString makeAbsolute(const char* path) {
  if (path[0] == '/') {
    return path;
  }
  char currentDir[kCurrentDirCapacity] = {};
  const char* known = getcwd(currentDir, sizeof currentDir);
  SString absolute(known == nullptr ? kPathSeparator : known);
  appendPathSeparator(absolute);
  return absolute + path;
}

// QUIRK(quiet-232): with the purposes 0 and 2 the status 232 shows no error text; every other
// failure does.
bool isLoudFailure(std::int32_t status) {
  return status != 0 && !(status == kQuietFailure && Launcher::isQuietPurpose());
}

// For what cannot wait for a console and a language.
void complain(const char* text) {
  std::fprintf(stderr, "%s\n", text);
}

int runLauncher(StringDeque& args, const SString& path) {
  const Launcher cleanUpAtEnd;
  const std::int32_t status = Launcher::process(args, path);
  if (isLoudFailure(status) && !Launcher::getErrOutput().empty()) {
    PlatformImpl::showUIMessage(Launcher::getErrOutput());
  }
  return status;
}

int runWith(int argc, char** argv) {
  StringDeque args;
  for (int i = 1; i < argc; ++i) {
    args.push_back(argv[i]);
  }
  return runLauncher(args, makeAbsolute(argc > 0 ? argv[0] : ""));
}

}  // namespace

#if defined(__GLIBCXX__) && defined(NDEBUG)
// Nothing gets out of `main`. The library's own handler would tell the type of what did; that alone
// takes 45 KB.
void __gnu_cxx::__verbose_terminate_handler() {  // NOLINT(bugprone-reserved-identifier)
  std::abort();
}
#endif

int main(int argc, char** argv) {
  static_cast<void>(kStubMark[0]);
  PlatformImpl::prepareProcess();
  if (PlatformImpl::hasBorrowedRights()) {
    complain(kBorrowedRights);
    return kFailure;
  }
  const MemoryReserve forTheEnd;
  try {
    const int status = runWith(argc, argv);
    if (Launcher::endsByCancel()) {
      PlatformImpl::endByCancelingSignal();
    }
    return status;
  } catch (const std::bad_alloc&) {
    complain(kNoMemory);
    Launcher::logMessage(kNoMemory, LOG_ERROR);
    return kFailure;
  } catch (...) {
    std::abort();  // a bug of ours; the destructor of Launcher has cleaned up
  }
}
