// How the exchange of one request and its reply with one agent can end. Values; any thread.
#pragma once

#include <optional>
#include <utility>

#include "slp.h"
#include "wire/messages.h"

namespace slp::client {

struct Exchange {
  enum class End {
    kReplied,
    kTimedOut,
    kRefused,   ///< a host that runs no agent or is not there
    kFailed,    ///< no way there, or a connection that broke
    kTooLarge,  ///< a request that no message can hold
  };

  End end = End::kFailed;
  std::optional<Message> reply;  ///< exactly with kReplied

  static Exchange Replied(Message message) { return {End::kReplied, std::move(message)}; }
};

/// What the end means to who asked one certain agent: SLP_OK with a reply, whatever that says.
SLPError ToSlpError(Exchange::End end);

}  // namespace slp::client
