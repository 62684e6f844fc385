// The scan of the disks: PlatformImpl's search for files below every search partition.
#include "platform/FindFiles.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

void PlatformImpl::findFiles(const StringDeque& names, FileFindListener& listener) {
  FindFiles walk(names, listener);
  StringDeque partitions;
  getJVMSearchPartitions(partitions);
  for (long i = 0; i < partitions.size(); ++i) {
    SString root = partitions[i];
    appendPathSeparator(root);
    if (walk.process(root)) {
      return;
    }
  }
}
