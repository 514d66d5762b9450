// Damaged messages for a daemon, the same ones in every run with the same seed. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "wire/messages.h"

namespace slp::support {

class MessageMutator {
 public:
  explicit MessageMutator(std::uint32_t seed);

  /// A request of any kind with up to three bytes changed, or random bytes behind the beginning of a header.
  Bytes Next();

  /// A well-formed registration with a few characters of its texts changed.
  Bytes NextRegistration();

  std::size_t Below(std::size_t bound) { return random_() % bound; }

 private:
  char Telling();
  Bytes Random();
  void Change(Bytes& bytes);

  std::mt19937 random_;
  std::vector<Bytes> seeds_;
};

}  // namespace slp::support
