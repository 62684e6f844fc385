// Sha256: the digest of bytes that come one after another.
#ifndef CORVANE_AUTHORING_SHA256_H
#define CORVANE_AUTHORING_SHA256_H

#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace authoring {

inline constexpr std::size_t kSha256Size = 32;

class Sha256 {
 public:
  // Throws AuthoringError, as its functions do, when the library has no SHA-256: its settings can
  // forbid that.
  Sha256();

  void add(std::string_view bytes);
  // The digest, kSha256Size bytes, of all that was added since the last call.
  std::string finish();

 private:
  struct Free {
    void operator()(evp_md_ctx_st* context) const;
  };
  std::unique_ptr<evp_md_ctx_st, Free> m_context;
};

std::string sha256Of(std::string_view bytes);

// As sha256sum writes it.
std::string hexOf(std::string_view digest);

}  // namespace authoring

#endif
