// MD5 by OpenSSL.

#include <cerrno>
#include <new>
#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>

#include "paku/md5.h"

namespace PAKU_3_1::internal {
namespace {

// When the library is loaded: OpenSSL cleans up when the process ends, in the reverse order, and
// objects of the program may want a checksum until they are destroyed.
[[maybe_unused]] const int s_initialised =
    OPENSSL_init_crypto(OPENSSL_INIT_ADD_ALL_DIGESTS, nullptr);

/// OpenSSL may be used no more when the program has cleaned it up by itself.
bool isUsable() {
  return OPENSSL_init_crypto(0, nullptr) == 1;
}

}  // namespace

struct FreeContext {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

struct Md5::State {
  std::unique_ptr<EVP_MD_CTX, FreeContext> context{EVP_MD_CTX_new()};
  bool works = begin(context.get());

  /// Returns false when the library would not compute it. That there is no memory is another thing:
  /// files are compared later, and not taken for what nobody could look at.
  static bool begin(EVP_MD_CTX* context) {
    ERR_set_mark();
    errno = 0;
    const bool hasBegun =
        context && isUsable() && EVP_DigestInit_ex(context, EVP_md5(), nullptr) == 1;
    const bool hasNoMemory = !context || (!hasBegun && errno == ENOMEM);
    ERR_pop_to_mark();  // the list of errors is the caller's
    if (hasNoMemory)
      throw std::bad_alloc();
    return hasBegun;
  }
};

Md5::Md5() : m_state(std::make_unique<State>()) {}

Md5::~Md5() = default;

void Md5::add(const void* bytes, std::size_t count) {
  m_state->works = m_state->works && EVP_DigestUpdate(m_state->context.get(), bytes, count) == 1;
}

std::wstring Md5::finish() {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (!m_state->works || EVP_DigestFinal_ex(m_state->context.get(), digest, &length) != 1)
    return {};
  return digestText(digest, length);
}

}  // namespace PAKU_3_1::internal
