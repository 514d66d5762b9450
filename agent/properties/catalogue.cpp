#include "properties/catalogue.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace slp {
namespace {

constexpr int kUnbounded = std::numeric_limits<int>::max();

/// What a UDP datagram over IPv4 can carry: 65535 without the headers of both.
constexpr int kLargestDatagram = 65507;

constexpr std::string_view kTimeoutsDefault = "500,750,1000,1500,2000,3000";

constexpr PropertyInfo Flag(std::string_view key, std::string_view default_value, std::string_view effect) {
  return {.key = key, .default_value = default_value, .effect = effect, .kind = PropertyKind::kBool};
}

constexpr PropertyInfo Number(std::string_view key, std::string_view default_value, int least, int most,
                              std::string_view effect) {
  return {.key = key,
          .default_value = default_value,
          .effect = effect,
          .kind = PropertyKind::kInt,
          .least = least,
          .most = most};
}

/// `least` lets a 0 that a program sets be read as it stands, though no file may say it.
constexpr PropertyInfo Limit(std::string_view key, std::string_view effect) {
  return {.key = key,
          .default_value = "-1",
          .effect = effect,
          .kind = PropertyKind::kLimit,
          .least = -1,
          .most = kUnbounded};
}

constexpr PropertyInfo Timeouts(std::string_view key, std::string_view effect) {
  return {.key = key,
          .default_value = kTimeoutsDefault,
          .effect = effect,
          .kind = PropertyKind::kTimeouts,
          .least = 1,
          .most = kUnbounded};
}

constexpr PropertyInfo Text(std::string_view key, std::string_view default_value, std::string_view effect) {
  return {.key = key, .default_value = default_value, .effect = effect, .kind = PropertyKind::kText};
}

constexpr PropertyInfo List(std::string_view key, std::string_view default_value, std::string_view effect) {
  return {.key = key, .default_value = default_value, .effect = effect, .kind = PropertyKind::kTextList};
}

constexpr PropertyInfo Ipv4Address(std::string_view key, std::string_view default_value,
                                   std::string_view effect) {
  return {.key = key, .default_value = default_value, .effect = effect, .kind = PropertyKind::kIpv4Address};
}

constexpr PropertyInfo Hosts(std::string_view key, std::string_view default_value, std::string_view effect) {
  return {.key = key, .default_value = default_value, .effect = effect, .kind = PropertyKind::kHostList};
}

constexpr PropertyInfo Language(std::string_view key, std::string_view default_value,
                                std::string_view effect) {
  return {.key = key, .default_value = default_value, .effect = effect, .kind = PropertyKind::kLanguage};
}

constexpr PropertyInfo Scopes(std::string_view key, std::string_view default_value, std::string_view effect) {
  return {.key = key, .default_value = default_value, .effect = effect, .kind = PropertyKind::kScopeList};
}

constexpr PropertyInfo Attributes(std::string_view key, std::string_view default_value,
                                  std::string_view effect) {
  return {.key = key, .default_value = default_value, .effect = effect, .kind = PropertyKind::kAttributeList};
}

constexpr PropertyInfo WithoutEffect(PropertyInfo property) {
  property.has_effect = false;
  return property;
}

constexpr PropertyInfo ReadOnly(PropertyInfo property) {
  property.read_only = true;
  return property;
}

constexpr PropertyInfo kCatalogue[] = {
    Flag("net.slp.isDA", "false", "be a directory agent, too"),
    Number("net.slp.DAHeartBeat", "10800", 1, kUnbounded,
           "seconds between two unsolicited advertisements of a directory agent"),
    Attributes("net.slp.DAAttributes", "", "attribute list that a directory agent advertises"),
    Scopes("net.slp.useScopes", "DEFAULT", "scopes that are served, registered in and searched by default"),
    Hosts("net.slp.DAAddresses", "", "addresses of directory agents that are used without looking for them"),
    Flag("net.slp.traceDATraffic", "false", "log the traffic with directory agents"),
    Flag("net.slp.traceMsg", "false", "log every message"),
    Flag("net.slp.traceDrop", "false", "log messages that are dropped, and why"),
    Flag("net.slp.traceReg", "false", "log registrations and deregistrations"),
    Flag("net.slp.appendLog", "true", "append to the daemon's log file instead of beginning it anew"),
    Text("net.slp.serializedRegURL", "", "file of registrations that the daemon reads at its start"),
    Flag("net.slp.isBroadcastOnly", "false", "broadcast instead of multicast"),

    Flag("net.slp.passiveDADetection", "true", "listen for the advertisements of directory agents"),
    Flag("net.slp.activeDADetection", "true", "look for directory agents"),
    Number("net.slp.DAActiveDiscoveryInterval", "900", 0, 65535,
           "seconds between two searches for directory agents; 0: never"),
    Number("net.slp.multicastTTL", "255", 1, 255, "how many routers a multicast may pass"),
    Number("net.slp.multicastMaximumWait", "15000", 1, kUnbounded,
           "longest multicast search, in milliseconds"),
    Timeouts("net.slp.multicastTimeouts", "wait after each round of a multicast search"),
    Number("net.slp.unicastMaximumWait", "5000", 1, kUnbounded, "longest unicast request, in milliseconds"),
    Timeouts("net.slp.unicastTimeouts", "wait after each try of a unicast request"),
    Number("net.slp.DADiscoveryMaximumWait", "5000", 1, kUnbounded,
           "longest search for directory agents, in milliseconds"),

    Timeouts("net.slp.DADiscoveryTimeouts", "wait after each round of a search for directory agents"),
    Timeouts("net.slp.datagramTimeouts", "wait after each datagram to a directory agent"),

    Number("net.slp.randomWaitBound", "1000", 0, kUnbounded, "longest random wait, in milliseconds"),
    Number("net.slp.MTU", "1400", 576, kLargestDatagram, "longest datagram, in bytes"),
    Number("net.slp.maxRegistrationsPerHost", "10000", 1, 1'000'000,
           "registrations that a directory agent takes from one other host"),
    Number("net.slp.maxBytesPerHost", "67108864", 65536, kUnbounded,
           "bytes of memory that a directory agent gives to the registrations of one other host"),
    Number("net.slp.replyRate", "500", 1, 1'000'000,
           "whole UDP answers a second to one other host; what is more is sent on to TCP"),
    List("net.slp.trustedNetworks", "",
         "networks, as in 192.0.2.0/24, beyond the daemon's own that may be sent UDP answers longer than "
         "their requests"),
    List("net.slp.interfaces", "", "addresses or names of the interfaces that are used; empty: all"),
    Ipv4Address("net.slp.broadcastAddr", "255.255.255.255", "where broadcasts go"),
    Number("net.slp.port", "427", 1, 65535, "port of every agent"),
    WithoutEffect(Flag("net.slp.useIPv4", "true", "use IPv4")),
    Flag("net.slp.useIPv6", "false", "use IPv6, beside IPv4"),
    Attributes("net.slp.SAAttributes", "", "attribute list that a service agent advertises"),
    Language("net.slp.locale", "en", "language tag of messages"),
    Limit("net.slp.maxResults", "most results of a search; -1: all"),
    WithoutEffect(List("net.slp.typeHint", "", "service types that searches for service agents ask for")),
    WithoutEffect(Flag("net.slp.preferSLPv1", "false", "ask by version 1 of the protocol first")),
    WithoutEffect(Flag("net.slp.securityEnabled", "false", "sign messages and check signatures")),
    Flag("net.slp.watchRegistrationPID", "true", "drop registrations whose process has ended"),
    Flag("net.slp.checkSourceAddr", "true",
         "as a directory agent, take registrations from other hosts only for their own address; a service "
         "agent takes those of its own host alone"),
    WithoutEffect(Flag("net.slp.useDHCP", "true", "ask DHCP for scopes and directory agents")),
    Number("net.slp.staleDACheckPeriod", "0", 0, kUnbounded,
           "seconds between two checks whether directory agents still answer; 0: never"),
    WithoutEffect(Flag("net.slp.indexSrvtype", "false", "keep an index of service types")),
    WithoutEffect(List("net.slp.indexedAttributes", "", "attributes of which an index is kept")),
    ReadOnly(Text("net.slp.OpenSLPVersion", "2.0.0", "version of the agent's interface")),
};

}  // namespace

std::span<const PropertyInfo> PropertyCatalogue() {
  return kCatalogue;
}

const PropertyInfo* FindProperty(std::string_view key) {
  const auto* const found = std::find_if(std::begin(kCatalogue), std::end(kCatalogue),
                                         [key](const PropertyInfo& property) { return property.key == key; });
  return found == std::end(kCatalogue) ? nullptr : found;
}

bool IsReadOnlyProperty(std::string_view key) {
  if (key == kGlobalFileKey || key == kEnvironmentFileKey || key == kApplicationFileKey) {
    return true;
  }
  const PropertyInfo* const property = FindProperty(key);
  return property != nullptr && property->read_only;
}

std::string DescribeAllowedValues(const PropertyInfo& property) {
  const bool bounded = property.most != kUnbounded;
  switch (property.kind) {
    case PropertyKind::kBool:
      return "true or false";
    case PropertyKind::kInt:
      return "a whole number from " + std::to_string(property.least) +
             (bounded ? " to " + std::to_string(property.most) : " on");
    case PropertyKind::kLimit:
      return "-1 or a whole number from 1 on";
    case PropertyKind::kTimeouts:
      return "milliseconds above 0, separated by commas";
    case PropertyKind::kText:
      return "a text";
    case PropertyKind::kTextList:
      return "texts separated by commas";
    case PropertyKind::kIpv4Address:
      return "an IPv4 address";
    case PropertyKind::kHostList:
      return "addresses or names of hosts separated by commas";
    case PropertyKind::kLanguage:
      return "a language tag";
    case PropertyKind::kScopeList:
      return "scope names separated by commas";
    case PropertyKind::kAttributeList:
      return "an attribute list";
  }
  return {};
}

}  // namespace slp
