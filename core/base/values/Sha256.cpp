#include "core/base/values/Sha256.h"

#include "core/base/values/FatalError.h"

#include <openssl/evp.h>

#include <new>
#include <string_view>

namespace orvane {
namespace {

EVP_MD_CTX* contextOf(void* context) noexcept {
  return static_cast<EVP_MD_CTX*>(context);
}

// The library fails here only where it is broken, and a digest that is not one must never be taken for one.
void check(int result) {
  if (result != 1) fatalError("SHA-256 is not available in libcrypto");
}

// Looked up once: a look-up for every small file would cost as much as its digest.
const EVP_MD* algorithm() {
  struct Closer {
    void operator()(EVP_MD* found) const noexcept { EVP_MD_free(found); }
  };
  static const std::unique_ptr<EVP_MD, Closer> found(EVP_MD_fetch(nullptr, "SHA256", nullptr));
  return found.get();
}

void* newContext() {
  EVP_MD_CTX* context = EVP_MD_CTX_new();
  if (context == nullptr) throw std::bad_alloc();
  return context;
}

}  // namespace

void Sha256::Closer::operator()(void* context) const noexcept {
  EVP_MD_CTX_free(contextOf(context));
}

Sha256::Sha256() : m_context(newContext()) {
  check(EVP_DigestInit_ex2(contextOf(m_context.get()), algorithm(), nullptr));
}

Sha256::Sha256(const Sha256& other) : m_context(newContext()) {
  check(EVP_MD_CTX_copy_ex(contextOf(m_context.get()), contextOf(other.m_context.get())));
}

void Sha256::update(std::span<const std::byte> bytes) {
  check(EVP_DigestUpdate(contextOf(m_context.get()), bytes.data(), bytes.size()));
}

Sha256::Digest Sha256::finish() {
  Digest digest{};
  check(EVP_DigestFinal_ex(contextOf(m_context.get()), digest.data(), nullptr));
  check(EVP_DigestInit_ex2(contextOf(m_context.get()), nullptr, nullptr));
  return digest;
}

std::string digestText(const Sha256::Digest& digest) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  text.reserve(2 * digest.size());
  for (const auto byte : digest) {
    text.push_back(digits[byte >> 4U]);
    text.push_back(digits[byte & 0xFU]);
  }
  return text;
}

}  // namespace orvane
