#include "fakes/FakeDiskScan.h"

#include "platform/FindFiles.h"
#include "platform/PlatformImpl.h"
#include "support/JVMSupport.h"

namespace test {

std::vector<std::string> FakeDiskScan::roots;
std::vector<std::string> FakeDiskScan::names;
std::function<void()> FakeDiskScan::atEnd;

void FakeDiskScan::reset() {
  roots.clear();
  names.clear();
  atEnd = nullptr;
}

}  // namespace test

void PlatformImpl::findFiles(const StringDeque& names, FileFindListener& listener) {
  test::FakeDiskScan::names = test::toVector(names);
  FindFiles walk(names, listener);
  for (const std::string& root : test::FakeDiskScan::roots) {
    if (walk.process(test::sstr(root))) {
      break;
    }
  }
  if (test::FakeDiskScan::atEnd) {
    test::FakeDiskScan::atEnd();
  }
}
