// MD5 by OpenSSL.

#include <openssl/evp.h>

#include "paku/md5.h"

namespace PAKU_3_1::internal {

struct Md5::State {
  EVP_MD_CTX* context = EVP_MD_CTX_new();
  bool works = context && EVP_DigestInit_ex(context, EVP_md5(), nullptr) == 1;

  State() = default;
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() { EVP_MD_CTX_free(context); }
};

Md5::Md5() : m_state(std::make_unique<State>()) {}

Md5::~Md5() = default;

void Md5::add(const void* bytes, std::size_t count) {
  m_state->works = m_state->works && EVP_DigestUpdate(m_state->context, bytes, count) == 1;
}

std::wstring Md5::finish() {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (!m_state->works || EVP_DigestFinal_ex(m_state->context, digest, &length) != 1)
    return {};
  return digestText(digest, length);
}

}  // namespace PAKU_3_1::internal
