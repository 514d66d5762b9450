// Looks up the addresses of hosts by their names. The system's way to do that may take as long as it likes,
// so it happens on threads that nobody waits for. Any thread.
#pragma once

#include <asio/error_code.hpp>
#include <asio/ip/address.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace slp {

/// A name, and whether IPv6 addresses are wanted beside those of IPv4.
struct HostQuery {
  std::string name;
  bool ipv6 = false;
  bool operator==(const HostQuery&) const = default;
  bool operator<(const HostQuery& other) const {
    return std::tie(name, ipv6) < std::tie(other.name, other.ipv6);
  }
};

struct HostAnswer {
  asio::error_code error;                    ///< why there are no addresses
  std::vector<asio::ip::address> addresses;  ///< those of single hosts, each once
};

class HostLookups {
 public:
  /// Blocks for as long as it takes; may answer with any addresses. What it throws is a failed lookup.
  using Resolve = std::function<HostAnswer(const HostQuery& query)>;
  /// Called on a thread of the lookups, one call at a time; must neither block nor use the lookups. One that
  /// throws is called once more, with what failed for an answer.
  using Done = std::function<void(const HostQuery& query, const HostAnswer& answer)>;

  /// No more addresses of one name are told: a name server cannot make anyone ask any number of hosts.
  static constexpr std::size_t kMostAddresses = 8;

  /// Names that are looked up side by side; the others wait for their turn.
  static constexpr std::size_t kSideBySide = 4;

  explicit HostLookups(Done done, Resolve resolve = AskSystem);
  HostLookups(const HostLookups&) = delete;
  HostLookups& operator=(const HostLookups&) = delete;

  /// Waits for nothing but a call of `done` that is under way; there is none afterwards. What is being looked
  /// up ends when it does, and touches nothing of this object any more.
  ~HostLookups();

  /// `done` is called with the answer, also when there is no memory for it or no thread can be started; on
  /// this thread then.
  void Begin(const HostQuery& query) noexcept;

  /// By the system's files and name servers.
  static HostAnswer AskSystem(const HostQuery& query);

 private:
  struct State;

  static void Work(const std::shared_ptr<State>& state);
  static void Tell(const State& state, const HostQuery& query, const HostAnswer& answer) noexcept;

  std::shared_ptr<State> state_;
};

}  // namespace slp
