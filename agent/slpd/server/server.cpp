#include "slpd/server/server.h"

#include <algorithm>
#include <asio/post.hpp>
#include <random>

#include "slpd/earlier.h"
#include "slpd/server/sender_origin.h"
#include "wire/codec.h"

namespace slp {
namespace {

// How long directory agents may take to acknowledge that the services of this host are gone.
constexpr std::chrono::seconds kLongestEnd{2};

// Boot timestamps count seconds: after so long the next start has another one.
constexpr std::chrono::seconds kBootTimestampStep{1};

bool UsesIpv6(const Configuration& configuration) {
  return configuration.properties.GetBool("net.slp.useIPv6");
}

std::string Joined(const std::vector<std::string>& texts, std::string_view separator) {
  std::string joined;
  for (const std::string& text : texts) {
    joined.append(joined.empty() ? "" : separator).append(text);
  }
  return joined;
}

}  // namespace

std::uint32_t Server::SecondsSince1970() {
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
          .count());
}

std::uint32_t Server::AnyNumber() {
  static std::random_device source;
  return source();
}

void Server::Events::OnRegistration(RegistrationEvent event, const RegistrationView& registration) {
  Trace::OnRegistration(event, registration);
  if (registration.process_id != 0) {
    server_.processes_to_review_.push_back(registration.process_id);
  }
  server_.directory_traffic_.OnRegistration(event, registration);
}

Server::Server(asio::io_context& io, Log& log, Clock clock, const ConnectionLimits& limits,
               WallClock wall_clock, DirectoryClient::Random random, HostInterfaces::Source interfaces)
    : io_(io),
      log_(log),
      clock_(std::move(clock)),
      wall_clock_(std::move(wall_clock)),
      events_(log, *this),
      registry_(events_),
      process_watch_(io, [this](std::uint32_t process_id) { OnProcessEnded(process_id); }),
      listeners_(io, *this, limits),
      directory_traffic_(
          io, listeners_, registry_, log, std::move(random),
          [this](std::span<const std::uint8_t> message, const Sender& sender) { OnMessage(message, sender); },
          [this] {
            if (ended_ == nullptr) {
              directory_traffic_.UseNames(clock_());
              Settle();
            }
          }),
      timer_(io),
      end_timer_(io),
      host_interfaces_(io, log, std::move(interfaces), [this] { FollowInterfaces(); }),
      self_(this, [](Server*) {}) {}

Server::~Server() {
  Stop();
}

bool Server::Start(const Configuration& configuration, std::string& reason) {
  handler_ = std::make_unique<RequestHandler>(registry_, configuration.settings, events_,
                                              [this](std::uint32_t process_id) {
                                                processes_to_review_.push_back(process_id);
                                                return process_watch_.Watch(process_id);
                                              });
  handler_->SetKnownAgents([this](const std::vector<std::string>& scopes) {
    return directory_traffic_.KnownAgents(scopes, clock_());
  });
  // Registrations of the file are complete before the first request is taken (RFC 2614 section 2.4).
  configuration_ = configuration;
  events_.Configure(configuration.settings);
  std::vector<PropertyProblem> in_file;
  const RegistrationFile file = ReadRegistrationFile(configuration.settings, in_file);
  Tell(in_file);
  LoadRegistrations(file);

  // Before the interfaces are listed, so that no change of them goes unnoticed.
  address_watch_ = std::make_unique<AddressWatch>(io_, [this] { FollowInterfaces(); });
  std::vector<std::string> problems;
  if (!listeners_.Apply(PlanFor(configuration, problems), problems)) {
    address_watch_.reset();
    reason = Joined(problems, "; ");
    return false;
  }
  lasting_problems_.Start(problems, clock_());
  ReviewProblemsLater();
  Tell(problems);
  ApplySettings(configuration.settings);
  Settle();
  log_.Write(LogKind::kState, "slpd: ready on " + Joined(listeners_.ServedEndpoints(), ", ") + ", scopes " +
                                  Joined(configuration.settings.scopes, ",") +
                                  (configuration.settings.directory_agent ? ", as directory agent" : ""));
  return true;
}

// Steps:
// 1. The registration file must be usable in full, and there must be room for all of it.
// 2. Open new sockets; with none of them open, nothing has changed.
// 3. Only then the settings and the file's registrations change.
bool Server::Reload(const Configuration& configuration, std::string& reason) {
  std::vector<PropertyProblem> in_file;
  const RegistrationFile file = ReadRegistrationFile(configuration.settings, in_file);
  CheckRoom(file, registry_, in_file);
  if (!in_file.empty()) {
    reason = in_file.front().ToString();
    return false;
  }
  std::vector<std::string> problems;
  if (!listeners_.Apply(PlanFor(configuration, problems), problems)) {
    reason = Joined(problems, "; ");
    return false;
  }
  lasting_problems_.Start(problems, clock_());
  ReviewProblemsLater();
  Tell(problems);
  configuration_ = configuration;
  ApplySettings(configuration.settings);
  LoadRegistrations(file);
  Settle();
  log_.Write(LogKind::kState, "slpd: reloaded, serving " + Joined(listeners_.ServedEndpoints(), ", ") +
                                  ", scopes " + Joined(configuration.settings.scopes, ","));
  return true;
}

void Server::Tell(const std::vector<std::string>& problems) {
  for (const std::string& problem : problems) {
    log_.Write(LogKind::kProblem, problem);
  }
}

void Server::Tell(const std::vector<PropertyProblem>& problems) {
  for (const PropertyProblem& problem : problems) {
    log_.Write(LogKind::kProblem, problem.ToString());
  }
}

ListenPlan Server::PlanFor(const Configuration& configuration, std::vector<std::string>& problems) {
  return MakeListenPlan(configuration.properties, host_interfaces_.Current(UsesIpv6(configuration), clock_()),
                        problems);
}

// An address that could not be served, or a group that could not be heard, may be to be had later.
void Server::ReviewProblemsLater() {
  if (const std::optional<Seconds> wait = lasting_problems_.ReviewAfter(clock_())) {
    host_interfaces_.TryAgain(*wait);
  }
}

// A network may come up long after the daemon: listens on what the configuration asks for and is there now.
void Server::FollowInterfaces() {
  const std::vector<std::string> before = listeners_.ServedEndpoints();
  std::vector<std::string> problems;
  const bool applied = listeners_.Apply(PlanFor(configuration_, problems), problems);
  Tell(lasting_problems_.Review(problems, clock_()));
  ReviewProblemsLater();
  if (applied && listeners_.ServedEndpoints() != before) {
    ApplySettings(configuration_.settings);
    Settle();
    log_.Write(LogKind::kState,
               "slpd: interfaces changed, serving " + Joined(listeners_.ServedEndpoints(), ", "));
  }
}

void Server::End(std::function<void()> ended) {
  const bool again = ended_ != nullptr;
  ended_ = std::move(ended);
  if (!again) {
    address_watch_.reset();
    host_interfaces_.Stop();
    directory_traffic_.Leave(clock_());
    end_timer_.expires_after(kLongestEnd);
    end_timer_.async_wait([weak = std::weak_ptr(self_)](const asio::error_code& error) {
      if (const auto self = weak.lock(); self && !error) {
        self->FinishEnd();
      }
    });
    Settle();
  }
  if (again || directory_traffic_.left()) {
    FinishEnd();
  }
}

void Server::FinishEnd() {
  if (const auto ended = std::exchange(ended_, nullptr)) {
    Stop();
    ended();
  }
}

void Server::Stop() {
  address_watch_.reset();
  host_interfaces_.Stop();
  end_timer_.cancel();
  directory_traffic_.SayFarewell();
  listeners_.Close();
  timer_.cancel();
  armed_for_.reset();
}

void Server::Tick() {
  registry_.Expire(clock_());
  armed_for_.reset();
  Settle();
}

std::chrono::milliseconds Server::WaitBefore(std::span<const std::uint8_t> message, const Sender& sender) {
  return handler_->WaitBefore(message, OriginOf(sender), clock_());
}

std::optional<Bytes> Server::OnMessage(std::span<const std::uint8_t> message, const Sender& sender) {
  std::optional<Bytes> reply;
  if (DirectoryTraffic::Wants(message)) {
    TakeReply(message, OriginOf(sender));
  } else if (ended_ == nullptr) {
    reply = handler_->Handle(message, OriginOf(sender), clock_());
  }
  Settle();
  return reply;
}

void Server::TakeReply(std::span<const std::uint8_t> bytes, const RequestOrigin& origin) {
  const Result<Message> message = Decode(bytes);
  if (!message) {
    return events_.OnDropped("malformed, and of a kind that has no reply", bytes.size(), origin);
  }
  events_.OnMessageIn(*message, origin);
  directory_traffic_.TakeMessage(*message, bytes.size(), origin, clock_());
}

void Server::OnDropped(std::string_view reason, std::size_t size, const Sender& sender) {
  events_.OnDropped(reason, size, OriginOf(sender));
}

RequestOrigin Server::OriginOf(const Sender& sender) {
  return slp::OriginOf(sender, host_interfaces_.Recent(UsesIpv6(configuration_), clock_()),
                       configuration_.trusted_networks);
}

void Server::Settle() {
  ReviewProcesses();
  FollowTypes();
  directory_traffic_.Tick(clock_());
  ArmTimer();
  if (ended_ != nullptr && directory_traffic_.left()) {
    // By way of the loop: whoever is at work here still uses the sockets.
    asio::post(io_, [weak = std::weak_ptr(self_)] {
      if (const auto self = weak.lock()) {
        self->FinishEnd();
      }
    });
  }
}

// Requests by type are heard by who has services of the type (RFC 3111 section 4.2.1).
void Server::FollowTypes() {
  const TypeGroups& groups = registry_.type_groups();
  if (std::exchange(type_groups_heard_, groups.changes()) != groups.changes()) {
    std::vector<std::string> problems;
    listeners_.HearTypes(groups.Numbers(), problems);
    Tell(lasting_problems_.Add(problems, clock_()));
    ReviewProblemsLater();
  }
}

void Server::ArmTimer() {
  const std::optional<Instant> next = Earlier(registry_.NextExpiry(), directory_traffic_.NextDue(clock_()));
  if (next == armed_for_) {
    return;
  }
  armed_for_ = next;
  if (!next) {
    timer_.cancel();
    return;
  }
  timer_.expires_after(std::max(Instant(0), *next - clock_()));
  timer_.async_wait([weak = std::weak_ptr(self_)](const asio::error_code& error) {
    if (const auto self = weak.lock(); self && !error) {
      self->Tick();
    }
  });
}

// A process is watched from the moment a registration asks for it; when the registration was refused after
// all, or has left, and no other one is bound to the process, the watch ends.
void Server::ReviewProcesses() {
  if (processes_to_review_.empty()) {
    return;
  }
  const std::vector<std::uint32_t> bound = registry_.WatchedProcesses();
  for (const std::uint32_t process_id : processes_to_review_) {
    if (!std::binary_search(bound.begin(), bound.end(), process_id)) {
      process_watch_.Forget(process_id);
    }
  }
  processes_to_review_.clear();
}

void Server::OnProcessEnded(std::uint32_t process_id) {
  registry_.DropProcess(process_id);
  Settle();
}

void Server::ApplySettings(const AgentSettings& settings) {
  AgentSettings complete = settings;
  complete.own_addresses = listeners_.ServedAddresses();
  const bool role_ends = !settings.directory_agent && boot_timestamp_ != 0;
  if (!settings.directory_agent) {
    boot_timestamp_ = 0;
  } else if (boot_timestamp_ == 0) {
    boot_timestamp_ = wall_clock_();
    announced_from_ = clock_() + kBootTimestampStep;
  }
  complete.boot_timestamp = boot_timestamp_;
  complete.announced_from = announced_from_;
  handler_->SetSettings(complete);
  events_.Configure(complete);
  directory_traffic_.Apply(complete, configuration_.properties, clock_());
  if (role_ends) {
    // Their hosts forget this agent with its farewell, and would find no ear for a deregistration.
    registry_.DropHosts();
  }
}

void Server::LoadRegistrations(const RegistrationFile& file) {
  std::vector<PropertyProblem> problems;
  const std::size_t count = slp::LoadRegistrations(file, registry_, clock_(), problems);
  Tell(problems);
  if (!file.path.empty()) {
    log_.Write(LogKind::kState, "slpd: " + std::to_string(count) + " registrations from " + file.path);
  }
}

}  // namespace slp
