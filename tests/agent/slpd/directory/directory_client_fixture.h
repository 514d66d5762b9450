// A directory client with a registry of its own, and what leaves it. One thread.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "agent/slpd/daemon_logic.h"
#include "slpd/directory/directory_client.h"
#include "wire/codec.h"

namespace slp {

inline constexpr std::uint32_t kBootTime = 1000;

// One line for each thing that leaves, and the transaction id of what left last.
class RecordedWire : public DirectoryWire {
 public:
  void SendToAll(const std::function<Message(bool loopback)>& message) override {
    const Message sent = message(true);
    xid = sent.header.xid;
    lines_.push_back("all, but " + std::get<SrvRqst>(sent.body).previous_responders);
    beyond_host = std::get<SrvRqst>(message(false).body).previous_responders;
  }
  void Send(const DirectoryPeer& peer, const Message& message) override {
    bytes += Encode(message)->size();
    Record("to " + peer.address, message);
  }
  void SendByStream(const DirectoryPeer& peer, const Message& message) override {
    Record("tcp " + peer.address, message);
  }
  void Tell(bool problem, const std::string& text) override {
    lines_.push_back((problem ? "problem " : "told ") + text);
  }

  // Whether a question to the address was the latest thing; takes it out.
  bool TakeQuestion(const std::string& address) {
    if (lines_.empty() || lines_.back() != "to " + address + ": ask service:directory-agent") {
      return false;
    }
    lines_.pop_back();
    return true;
  }

  std::vector<std::string> Take() { return std::exchange(lines_, {}); }

  std::uint16_t xid = 0;
  std::size_t bytes = 0;  // of what went to single agents by datagrams
  std::string beyond_host;

 private:
  void Record(const std::string& how, const Message& message) {
    xid = message.header.xid;
    std::string what;
    if (const auto* registration = std::get_if<SrvReg>(&message.body)) {
      what = std::string("register ") + (message.header.fresh ? "" : "not fresh ") + registration->url.url +
             " " + message.header.language + " " + std::to_string(registration->url.lifetime) + " " +
             registration->scopes + " " + registration->attributes.substr(0, 10);
    } else if (const auto* end = std::get_if<SrvDereg>(&message.body)) {
      what = "deregister " + end->url.url + " " + end->scopes;
    } else {
      what = "ask " + std::get<SrvRqst>(message.body).service_type;
    }
    lines_.push_back(how + ": " + what);
  }

  std::vector<std::string> lines_;
};

// Tells the client of what happens in the registry, as the server does.
class ForwardedEvents : public RecordedEvents {
 public:
  void OnRegistration(RegistrationEvent event, const RegistrationView& registration) override {
    if (client != nullptr) {
      client->OnRegistration(event, registration);
    }
  }
  DirectoryClient* client = nullptr;
};

inline DirectoryClientSettings ClientSettings() {
  DirectoryClientSettings settings;
  settings.discovery_waits = {Instant(500), Instant(750), Instant(1000)};
  settings.datagram_waits = {Instant(500), Instant(750)};
  settings.scopes = {"DEFAULT", "TAMRO"};
  settings.own_addresses = {"10.0.0.1", "127.0.0.1"};
  return settings;
}

class DirectoryClientTest : public testing::Test {
 protected:
  DirectoryClientTest() { events_.client = &client_; }

  // Each random number is `random_`; each XID that follows from it, one more.
  std::uint32_t Random() { return random_; }

  void Register(const std::string& url, std::vector<std::string> scopes = {"DEFAULT"},
                const std::string& attributes = "",
                RegistrationSource source = RegistrationSource::kMessage) {
    Registration registration = MakeRegistration(url, "service:x", attributes);
    registration.scopes = std::move(scopes);
    registration.source = source;
    ASSERT_EQ(registry_.Register(registration, now_), Error::kOk);
  }

  void Advance(Instant by) {
    const Instant end = now_ + by;
    while (const auto next = client_.NextDue(now_)) {
      if (*next > end) {
        break;
      }
      now_ = std::max(now_, *next);
      client_.Tick(now_);
    }
    now_ = end;
    client_.Tick(now_);
  }

  // An agent that is there: asked about what it has said unasked, it says the same.
  void Hear(const std::string& address, std::uint32_t boot = kBootTime, const std::string& scopes = "DEFAULT",
            std::uint16_t xid = 0) {
    HearAs(address, address, boot, scopes, xid);
  }

  void HearAs(const std::string& sender, const std::string& in_url, std::uint32_t boot,
              const std::string& scopes, std::uint16_t xid, const std::string& attributes = "") {
    Message message;
    message.header.xid = xid;
    message.body =
        DaAdvert{Error::kOk, boot, "service:directory-agent://" + in_url, scopes, attributes, "", {}};
    Take(message, From(sender));
    if (xid == 0 && wire_.TakeQuestion(sender)) {
      message.header.xid = wire_.xid;
      Take(message, From(sender));
    }
  }

  // One that is not to be asked, whoever it comes from. Its bytes.
  std::size_t HearUnasked(const RequestOrigin& origin, std::uint32_t boot = kBootTime,
                          const std::string& scopes = "DEFAULT") {
    Message message;
    message.body =
        DaAdvert{Error::kOk, boot, "service:directory-agent://" + origin.address, scopes, "", "", {}};
    Take(message, origin);
    return Encode(message)->size();
  }

  void Take(const Message& message, const RequestOrigin& origin) {
    const Result<Bytes> bytes = Encode(message);
    ASSERT_TRUE(bytes);
    client_.OnAdvertisement(message, bytes->size(), origin, now_);
    client_.Tick(now_);
  }

  // An agent that wants no service more often than so.
  void HearWithInterval(const std::string& interval) {
    HearAs("10.0.0.5", "10.0.0.5", kBootTime, "DEFAULT", 0, "(min-refresh-interval=" + interval + ")");
  }

  void RegisterFor(std::uint16_t lifetime) {
    Registration registration = MakeRegistration("service:x://1", "service:x");
    registration.lifetime = lifetime;
    ASSERT_EQ(registry_.Register(registration, now_), Error::kOk);
    client_.Tick(now_);
  }

  void Acknowledge(const std::string& address, Error error = Error::kOk) {
    Message message;
    message.header.xid = wire_.xid;
    message.body = SrvAck{error};
    client_.OnAcknowledgment(message, From(address), now_);
  }

  static RequestOrigin From(const std::string& address) {
    return {address, false, true, Transport::kUdpUnicast, "10.0.0.1"};
  }

  // Whose address anybody may have forged.
  static RequestOrigin FromBeyond(const std::string& address) {
    return {address, false, false, Transport::kUdpUnicast, "10.0.0.1"};
  }

  // Settings without an active search of its own.
  void ApplyPassive() {
    DirectoryClientSettings settings = ClientSettings();
    settings.active = false;
    client_.Apply(settings, now_);
  }

  std::uint32_t random_ = 0;
  Instant now_{Seconds(100)};
  ForwardedEvents events_;
  Registry registry_{events_};
  RecordedWire wire_;
  DirectoryClient client_{registry_, wire_, [this] { return Random(); }};
};

}  // namespace slp
