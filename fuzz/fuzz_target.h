// What the fuzz targets share: the entry point that libFuzzer and the replay of seeds call, and checks that
// end the program, so that whoever runs it notices. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

/// One input; every file in targets/ defines it once. Always returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace slp::fuzz {

/// Ends the program with `claim` on the error output when it does not hold.
void Require(bool holds, std::string_view claim);

/// The bytes as text.
std::string_view TextOf(const std::uint8_t* data, std::size_t size);

/// The texts before and behind the first line end; without one the second is empty.
std::pair<std::string_view, std::string_view> FirstLineAndRest(std::string_view text);

}  // namespace slp::fuzz
