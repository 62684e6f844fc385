// The launcher's walk as a command, beside find(1) and its like: scan FOLDER prints each file whose
// path ends with "/bin/java".
#include <cstdio>

#include "platform/FileFindListener.h"
#include "platform/FindFiles.h"
#include "platform/PlatformImpl.h"

namespace {

class Printer : public FileFindListener {
 public:
  bool foundFile(const SString& path) override {
    std::puts(path.c_str());
    return false;
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: bench_scan FOLDER\n", stderr);
    return 1;
  }
  PlatformImpl::setSilent(true);
  StringDeque names;
  names.push_back("bin/java");
  Printer printer;
  FindFiles(names, printer).process(argv[1]);
  return 0;
}
