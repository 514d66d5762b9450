// Selection of interfaces; the operating system's part stands in posix/ and windows/.
#include "net/interfaces.h"

#include <algorithm>
#include <optional>

#include "net/addresses.h"
#include "text/fold.h"

namespace slp {
namespace {

/// What one element of net.slp.interfaces stands for.
std::vector<Interface> Resolve(const std::vector<Interface>& all, const std::string& element) {
  const auto address = ParseAddress(element);
  std::vector<Interface> found;
  for (const Interface& candidate : all) {
    if (candidate.up && (address ? candidate.address == *address : EqualFolded(candidate.name, element))) {
      found.push_back(candidate);
    }
  }
  if (found.empty() && address && address->is_loopback()) {
    // Hosts list 127.0.0.1 alone, yet the whole network is theirs.
    const auto loopback = std::find_if(all.begin(), all.end(), [](const Interface& candidate) {
      return candidate.up && candidate.loopback;
    });
    if (loopback != all.end()) {
      found.push_back(*loopback);
      found.back().address = *address;
    }
  }
  return found;
}

void AddOnce(std::vector<Interface>& list, const Interface& addition) {
  if (std::none_of(list.begin(), list.end(),
                   [&](const Interface& present) { return present.address == addition.address; })) {
    list.push_back(addition);
  }
}

}  // namespace

InterfaceSelection SelectInterfaces(const std::vector<Interface>& all,
                                    const std::vector<std::string>& wanted) {
  InterfaceSelection selection;
  for (const std::string& element : wanted) {
    const std::vector<Interface> found = Resolve(all, std::string(Trim(element)));
    if (found.empty()) {
      selection.unknown.push_back(element);
    }
    for (const Interface& addition : found) {
      AddOnce(selection.interfaces, addition);
    }
  }
  if (!wanted.empty()) {
    return selection;
  }
  for (const bool loopback : {false, true}) {
    for (const Interface& candidate : all) {
      // Some systems don't mark the loopback interface as able to multicast although it is.
      if (candidate.up && candidate.loopback == loopback && (candidate.multicast || loopback)) {
        AddOnce(selection.interfaces, candidate);
      }
    }
  }
  return selection;
}

bool IsOwnAddress(const std::vector<Interface>& all, const asio::ip::address_v4& address) {
  return address.is_loopback() || std::any_of(all.begin(), all.end(), [&](const Interface& candidate) {
           return candidate.address == address;
         });
}

bool IsOnOwnNetwork(const std::vector<Interface>& all, const asio::ip::address_v4& address) {
  return IsOwnAddress(all, address) || std::any_of(all.begin(), all.end(), [&](const Interface& candidate) {
           const auto mask = candidate.netmask.to_uint();
           return candidate.up && mask != 0 &&
                  (candidate.address.to_uint() & mask) == (address.to_uint() & mask);
         });
}

}  // namespace slp
