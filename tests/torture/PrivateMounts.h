// File systems of the harness's own, which nobody else sees.
#ifndef CORVANE_TESTS_TORTURE_PRIVATEMOUNTS_H
#define CORVANE_TESTS_TORTURE_PRIVATEMOUNTS_H

#include <string>

namespace torture {

// Whether this process may have them; else why not. Tried out in a child.
std::string whyNoPrivateMounts();
std::string whyNoDeadMount();
// For this process and its children, for good. What root may do there everybody may.
void enterPrivateMounts();

// A file system over a folder, until the end of the scope.
class Mount {
 public:
  // `options` as of mount(8) for a tmpfs.
  static Mount tmpfs(const std::string& folder, const std::string& options, unsigned long flags);
  static Mount bind(const std::string& source, const std::string& folder);
  // One that never answers: whoever looks into it waits until it is ended.
  static Mount dead(const std::string& folder);

  ~Mount();
  Mount(Mount&& other) noexcept;
  Mount& operator=(Mount&&) = delete;

 private:
  explicit Mount(std::string folder) : m_folder(std::move(folder)) {}
  void attach(const std::string& source, const char* type, unsigned long flags,
              const std::string& options);

  std::string m_folder;
  int m_device = -1;
};

}  // namespace torture

#endif
