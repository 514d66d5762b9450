#include "text/keyed_hash.h"

#include <bit>
#include <random>

namespace slp {
namespace {

constexpr std::size_t kWord = 8;

/// A byte as it counts in a word: least significant byte first, whatever the machine.
constexpr std::uint64_t Byte(std::string_view bytes, std::size_t place) {
  return std::uint64_t{static_cast<unsigned char>(bytes[place])} << (8 * place);
}

/// The first bytes, as many as a word has. Written out, it is compiled to one instruction.
constexpr std::uint64_t Word(std::string_view bytes) {
  return Byte(bytes, 0) | Byte(bytes, 1) | Byte(bytes, 2) | Byte(bytes, 3) | Byte(bytes, 4) | Byte(bytes, 5) |
         Byte(bytes, 6) | Byte(bytes, 7);
}

/// The bytes behind the last whole word of `text`. Where there is such a word, they are the end of one that
/// overlaps it.
std::uint64_t LastBytes(std::string_view text) {
  const std::size_t left = text.size() % kWord;
  if (left == 0) {
    return 0;
  }
  if (text.size() > kWord) {
    return Word(text.substr(text.size() - kWord)) >> (8 * (kWord - left));
  }
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < left; ++i) {
    word |= Byte(text, i);
  }
  return word;
}

class SipState {
 public:
  explicit SipState(const HashKey& key)
      : v0_(key.first ^ 0x736f6d6570736575U),
        v1_(key.second ^ 0x646f72616e646f6dU),
        v2_(key.first ^ 0x6c7967656e657261U),
        v3_(key.second ^ 0x7465646279746573U) {}

  void Add(std::uint64_t word) {
    v3_ ^= word;
    Round();
    v0_ ^= word;
  }

  std::uint64_t Finish() {
    v2_ ^= 0xFF;
    Round();
    Round();
    Round();
    return v0_ ^ v1_ ^ v2_ ^ v3_;
  }

 private:
  void Round() {
    v0_ += v1_;
    v1_ = std::rotl(v1_, 13) ^ v0_;
    v0_ = std::rotl(v0_, 32);
    v2_ += v3_;
    v3_ = std::rotl(v3_, 16) ^ v2_;
    v0_ += v3_;
    v3_ = std::rotl(v3_, 21) ^ v0_;
    v2_ += v1_;
    v1_ = std::rotl(v1_, 17) ^ v2_;
    v2_ = std::rotl(v2_, 32);
  }

  std::uint64_t v0_;
  std::uint64_t v1_;
  std::uint64_t v2_;
  std::uint64_t v3_;
};

HashKey AnyKey() {
  std::random_device source;
  const auto word = [&source] { return std::uint64_t{source()} << 32 | source(); };
  const std::uint64_t first = word();
  return {first, word()};
}

}  // namespace

// Whole words, and a last one of the bytes that are left over with the length as its highest byte.
std::uint64_t KeyedHash(std::string_view text, const HashKey& key) {
  SipState state(key);
  std::string_view rest = text;
  for (; rest.size() >= kWord; rest.remove_prefix(kWord)) {
    state.Add(Word(rest));
  }
  state.Add(LastBytes(text) | std::uint64_t{text.size()} << 56);
  return state.Finish();
}

std::uint64_t ProcessHash(std::string_view text) {
  static const HashKey key = AnyKey();
  return KeyedHash(text, key);
}

}  // namespace slp
