// The running daemon: sockets, registry, timers and process watch put together. Everything happens on the
// thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "net/address_watch.h"
#include "slpd/registry/registration_file.h"
#include "slpd/registry/registry.h"
#include "slpd/requests/request_handler.h"
#include "slpd/server/configuration.h"
#include "slpd/server/connection_limits.h"
#include "slpd/server/directory_traffic.h"
#include "slpd/server/host_interfaces.h"
#include "slpd/server/lasting_problems.h"
#include "slpd/server/listeners.h"
#include "slpd/server/log.h"
#include "slpd/server/message_receiver.h"
#include "slpd/server/process_watch.h"
#include "slpd/server/trace.h"

namespace slp {

class Server : private MessageReceiver {
 public:
  /// A clock that never goes back.
  using Clock = std::function<Instant()>;

  /// Seconds since 1970.
  using WallClock = std::function<std::uint32_t()>;

  /// `io` and `log` outlive the server.
  Server(asio::io_context& io, Log& log, Clock clock, const ConnectionLimits& limits = {},
         WallClock wall_clock = SecondsSince1970, DirectoryClient::Random random = AnyNumber,
         HostInterfaces::Source interfaces = EnumerateInterfaces);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() override;

  /// Registers what the registration file holds and opens the sockets. False when none could be opened;
  /// `reason` says why. Lesser problems go to the log.
  [[nodiscard]] bool Start(const Configuration& configuration, std::string& reason);

  /// Another configuration from now on, as a whole or not at all: false when the registration file can't be
  /// used or no socket could be opened, and all stays as it was. Registrations that programs made are kept,
  /// sockets change only where interfaces or port do.
  [[nodiscard]] bool Reload(const Configuration& configuration, std::string& reason);

  /// Takes no requests any more, has the own services deregistered with directory agents as long as a moment
  /// allows, stops, and calls `ended`: from within, when there is nothing to wait for. A second call doesn't
  /// wait.
  void End(std::function<void()> ended);

  /// Says farewell, where it is a directory agent, and closes all sockets.
  void Stop();

  static std::uint32_t SecondsSince1970();
  static std::uint32_t AnyNumber();

  /// Does what is due by the clock and sets the timer anew. Only needed when the clock was moved by hand.
  void Tick();

  const Registry& registry() const { return registry_; }
  const Listeners& listeners() const { return listeners_; }
  std::size_t watched_processes() const { return process_watch_.watched(); }

 private:
  // Tells the log, the directory agents, and the server which processes it may forget.
  class Events : public Trace {
   public:
    Events(Log& log, Server& server) : Trace(log), server_(server) {}
    void OnRegistration(RegistrationEvent event, const RegistrationView& registration) override;

   private:
    Server& server_;
  };

  std::chrono::milliseconds WaitBefore(std::span<const std::uint8_t> message, const Sender& sender) override;
  std::optional<Bytes> OnMessage(std::span<const std::uint8_t> message, const Sender& sender) override;
  void OnDropped(std::string_view reason, std::size_t size, const Sender& sender) override;

  void TakeReply(std::span<const std::uint8_t> bytes, const RequestOrigin& origin);
  void FollowInterfaces();
  void ReviewProblemsLater();
  RequestOrigin OriginOf(const Sender& sender);
  void Tell(const std::vector<std::string>& problems);
  void Tell(const std::vector<PropertyProblem>& problems);
  ListenPlan PlanFor(const Configuration& configuration, std::vector<std::string>& problems);
  void Settle();
  void FollowTypes();
  void FinishEnd();
  void ArmTimer();
  void ReviewProcesses();
  void OnProcessEnded(std::uint32_t process_id);
  void ApplySettings(const AgentSettings& settings);
  void LoadRegistrations(const RegistrationFile& file);

  asio::io_context& io_;
  Log& log_;
  Clock clock_;
  WallClock wall_clock_;
  std::uint32_t boot_timestamp_ = 0;
  Instant announced_from_{0};
  std::vector<std::uint32_t> processes_to_review_;
  Events events_;
  Registry registry_;
  ProcessWatch process_watch_;
  Listeners listeners_;
  DirectoryTraffic directory_traffic_;
  std::unique_ptr<RequestHandler> handler_;
  Configuration configuration_;
  asio::steady_timer timer_;
  asio::steady_timer end_timer_;
  std::function<void()> ended_;
  std::optional<Instant> armed_for_;
  HostInterfaces host_interfaces_;
  LastingProblems lasting_problems_;
  std::uint64_t type_groups_heard_ = 0;
  std::unique_ptr<AddressWatch> address_watch_;
  // Owns nothing. What waits in the loop holds it weakly: a wait that is over can't be cancelled any more,
  // and its handler may come when the server is gone.
  std::shared_ptr<Server> self_;
};

}  // namespace slp
