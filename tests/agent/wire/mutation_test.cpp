// Damaged messages, made in a way that is the same on every run: whatever decodes must survive being written
// and read again, and nothing may be read outside (which the sanitizers watch).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "agent/wire/golden_messages.h"
#include "agent/wire/printing.h"
#include "wire/codec.h"

namespace slp {
namespace {

// True when the bytes were a message.
bool SurvivesARoundTrip(const Bytes& bytes) {
  // A copy without spare room behind it, so that a step past the end is noticed.
  const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
  const Result<Message> message = Decode(exact);
  if (!message) {
    EXPECT_NE(message.error(), Error::kOk);
    return false;
  }
  const Result<Bytes> again = Encode(*message);
  EXPECT_TRUE(again.ok());
  if (again) {
    EXPECT_THAT(Decode(*again), Holds(*message));
    const Result<Bytes> within = EncodeWithin(*message, bytes.size() / 2);
    if (within) {
      EXPECT_LE(within->size(), bytes.size() / 2);
      EXPECT_TRUE(Decode(*within).ok());
    }
  }
  return true;
}

void CorrectLength(Bytes& bytes) {
  if (bytes.size() >= 5) {
    bytes[2] = 0;
    bytes[3] = static_cast<std::uint8_t>(bytes.size() >> 8 & 0xFF);
    bytes[4] = static_cast<std::uint8_t>(bytes.size() & 0xFF);
  }
}

TEST(MutationTest, EveryByteChanged) {
  int survivors = 0;
  for (const GoldenMessage& golden : GoldenMessages()) {
    SCOPED_TRACE(golden.name);
    for (std::size_t position = 0; position < golden.bytes.size(); ++position) {
      const unsigned byte = golden.bytes[position];
      std::set<unsigned> values = {0, 1, 0xFF, (byte + 1) & 0xFF, (byte - 1) & 0xFF};
      for (unsigned bit = 0; bit < 8; ++bit) {
        values.insert(byte ^ 1U << bit);
      }
      for (const unsigned value : values) {
        Bytes bytes = golden.bytes;
        bytes[position] = static_cast<std::uint8_t>(value);
        survivors += SurvivesARoundTrip(bytes);
      }
    }
  }
  EXPECT_GT(survivors, 1000);
}

TEST(MutationTest, RandomDamage) {
  std::mt19937 random(20260801);  // NOLINT(cert-msc51-cpp): the same damage on every run
  const auto below = [&random](std::size_t bound) { return static_cast<std::size_t>(random()) % bound; };
  int survivors = 0;
  for (int round = 0; round < 20'000; ++round) {
    const std::vector<GoldenMessage>& goldens = GoldenMessages();
    Bytes bytes = goldens[below(goldens.size())].bytes;
    for (std::size_t change = below(4); change <= 4; ++change) {
      const auto position = bytes.begin() + static_cast<std::ptrdiff_t>(below(bytes.size()));
      switch (below(5)) {
        case 0:
          *position = static_cast<std::uint8_t>(below(256));
          break;
        case 1:
          *position ^= static_cast<std::uint8_t>(1U << below(8));
          break;
        case 2:
          bytes.insert(position, static_cast<std::uint8_t>(below(2) * 255));
          break;
        case 3: {
          const Bytes& other = goldens[below(goldens.size())].bytes;
          bytes.insert(position, other.begin() + static_cast<std::ptrdiff_t>(below(other.size())),
                       other.end());
          break;
        }
        default:
          bytes.erase(position, bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size()));
          if (bytes.empty()) {
            bytes.push_back(2);
          }
          break;
      }
    }
    if (below(4) != 0) {
      CorrectLength(bytes);
    }
    survivors += SurvivesARoundTrip(bytes);
  }
  EXPECT_GT(survivors, 100);
}

TEST(MutationTest, NoiseBehindAHeader) {
  std::mt19937 random(42);  // NOLINT(cert-msc51-cpp): the same noise on every run
  int survivors = 0;
  for (int round = 0; round < 20'000; ++round) {
    Bytes bytes = ToBytes("\x02\x01\x00\x00\x00\x80\x00\x00\x00\x00\x00\x01\x00\x00");
    bytes[1] = static_cast<std::uint8_t>(1 + random() % 11);
    bytes[5] = static_cast<std::uint8_t>(random());
    for (std::size_t left = random() % 60; left > 0; --left) {
      bytes.push_back(static_cast<std::uint8_t>(random() % 8));
    }
    CorrectLength(bytes);
    survivors += SurvivesARoundTrip(bytes);
  }
  EXPECT_GT(survivors, 100);
}

}  // namespace
}  // namespace slp
