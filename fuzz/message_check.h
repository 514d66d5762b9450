// The check that all targets of message families share. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "wire/messages.h"

namespace slp::fuzz {

/// Takes the bytes for a message of one of `family`, which its second byte chooses among, and requires of one
/// that decodes: it can be written, what was written decodes to the same message, and what was cut to half
/// its length is no longer than that and decodes. The message's length is made right when its highest byte is
/// 0.
void CheckMessage(const std::uint8_t* data, std::size_t size, std::initializer_list<FunctionId> family);

}  // namespace slp::fuzz
