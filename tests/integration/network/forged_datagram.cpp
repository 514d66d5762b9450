// Registers a service by a datagram that claims to come from any address of IPv6. Needs the right to send raw
// packets. Usage: forged_datagram SENDER RECEIVER PORT URL
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/ip6.h>
#include <netinet/udp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "wire/codec.h"
#include "wire/messages.h"

namespace {

using Packet = std::vector<std::uint8_t>;

constexpr std::uint8_t kVersion = 6 << 4;
constexpr std::uint8_t kHopLimit = 255;

template <typename Header>
void Append(Packet& packet, const Header& header) {
  packet.resize(packet.size() + sizeof header);
  std::memcpy(&packet[packet.size() - sizeof header], &header, sizeof header);
}

std::uint16_t At(const Packet& packet, std::size_t index) {
  const int low = index + 1 < packet.size() ? packet[index + 1] : 0;
  return static_cast<std::uint16_t>(packet[index] << 8 | low);
}

// Over the two addresses, the length, the number of the protocol and the datagram (RFC 8200 section 8.1).
std::uint16_t Checksum(const ip6_hdr& ip, const Packet& datagram) {
  Packet summed;
  Append(summed, ip.ip6_src);
  Append(summed, ip.ip6_dst);
  summed.insert(summed.end(), datagram.begin(), datagram.end());
  std::uint32_t sum = static_cast<std::uint32_t>(datagram.size()) + IPPROTO_UDP;
  for (std::size_t index = 0; index < summed.size(); index += 2) {
    sum += At(summed, index);
  }
  while (sum > 0xFFFF) {
    sum = (sum & 0xFFFF) + (sum >> 16);
  }
  return static_cast<std::uint16_t>(~sum);
}

Packet Datagram(const ip6_hdr& ip, std::uint16_t port, const slp::Bytes& message) {
  udphdr udp{};
  udp.uh_sport = htons(port);
  udp.uh_dport = htons(port);
  udp.uh_ulen = htons(static_cast<std::uint16_t>(sizeof udp + message.size()));
  Packet datagram;
  Append(datagram, udp);
  datagram.insert(datagram.end(), message.begin(), message.end());
  udp.uh_sum = htons(Checksum(ip, datagram));
  std::memcpy(datagram.data(), &udp, sizeof udp);
  return datagram;
}

slp::Bytes Registration(const std::string& url) {
  slp::Message message;
  message.header.xid = 1;
  message.header.language = "en";
  message.header.fresh = true;
  message.body = slp::SrvReg{{600, url, {}}, "service:x", "DEFAULT", "", {}};
  return slp::Encode(message).value();
}

}  // namespace

int main(int argument_count, char** arguments) {
  ip6_hdr ip{};
  if (argument_count != 5 || ::inet_pton(AF_INET6, arguments[1], &ip.ip6_src) != 1 ||
      ::inet_pton(AF_INET6, arguments[2], &ip.ip6_dst) != 1) {
    std::cerr << "usage: forged_datagram SENDER RECEIVER PORT URL\n";
    return 2;
  }
  const Packet datagram =
      Datagram(ip, static_cast<std::uint16_t>(std::stoul(arguments[3])), Registration(arguments[4]));
  ip.ip6_vfc = kVersion;
  ip.ip6_plen = htons(static_cast<std::uint16_t>(datagram.size()));
  ip.ip6_nxt = IPPROTO_UDP;
  ip.ip6_hlim = kHopLimit;
  Packet packet;
  Append(packet, ip);
  packet.insert(packet.end(), datagram.begin(), datagram.end());

  sockaddr_in6 to{};
  to.sin6_family = AF_INET6;
  to.sin6_addr = ip.ip6_dst;
  const int raw = ::socket(AF_INET6, SOCK_RAW, IPPROTO_RAW);
  const ssize_t sent =
      ::sendto(raw, packet.data(), packet.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
  if (sent != static_cast<ssize_t>(packet.size())) {
    std::cerr << "forged_datagram: " << std::strerror(errno) << "\n";
    return 1;
  }
  return ::close(raw);
}
