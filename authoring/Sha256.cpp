#include "authoring/Sha256.h"

#include <openssl/evp.h>

#include "authoring/AuthoringError.h"

namespace authoring {
namespace {

void require(bool success) {
  if (!success) {
    throw AuthoringError("SHA-256 cannot be computed: OpenSSL refuses it; see its openssl.cnf");
  }
}

}  // namespace

void Sha256::Free::operator()(evp_md_ctx_st* context) const {
  EVP_MD_CTX_free(context);
}

Sha256::Sha256() : m_context(EVP_MD_CTX_new()) {
  require(m_context != nullptr && EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) == 1);
}

void Sha256::add(std::string_view bytes) {
  require(EVP_DigestUpdate(m_context.get(), bytes.data(), bytes.size()) == 1);
}

std::string Sha256::finish() {
  unsigned char digest[kSha256Size];
  require(EVP_DigestFinal_ex(m_context.get(), digest, nullptr) == 1 &&
          EVP_DigestInit_ex(m_context.get(), nullptr, nullptr) == 1);
  return {reinterpret_cast<const char*>(digest), sizeof digest};
}

std::string sha256Of(std::string_view bytes) {
  Sha256 sum;
  sum.add(bytes);
  return sum.finish();
}

std::string hexOf(std::string_view digest) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string hex;
  for (const char byte : digest) {
    const auto value = static_cast<unsigned char>(byte);
    hex += kDigits[value >> 4];
    hex += kDigits[value & 15];
  }
  return hex;
}

}  // namespace authoring
