// Writes the seeds that are messages: make_seeds FOLDER puts each into the folder of its target below FOLDER.
// To be run again by hand when the wire format of a seed or the input format of a target changes; seeds of
// texts and inputs that the fuzzer found are kept as they are.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "wire/codec.h"

namespace slp {
namespace {

Bytes Written(Body body, bool fresh = false, std::vector<Extension> extensions = {}) {
  Message message;
  message.header.xid = 4711;
  message.header.fresh = fresh;
  message.header.extensions = std::move(extensions);
  message.body = std::move(body);
  Result<Bytes> bytes = Encode(message);
  if (!bytes) {
    std::cerr << "a seed cannot be written\n";
    std::exit(1);
  }
  return std::move(bytes).value();
}

struct Seed {
  std::string target;
  std::string name;
  Bytes bytes;
};

const AuthenticationBlock kSignature{2, {0, 0, 0, 9, 0, 1, 'p', 's', 'i', 'g'}};

std::vector<Seed> MessageSeeds() {
  const UrlEntry url{3600, "service:x:y://h:1/p", {}};
  const UrlEntry signed_url{1, "service:x://h", {kSignature}};
  return {
      {"service_messages", "request",
       Written(SrvRqst{"10.0.0.3,10.0.0.4", "service:x:y", "DEFAULT,TAMRO", "(&(a=1)(!(b=*x*)))", ""})},
      {"service_messages", "reply", Written(SrvRply{Error::kOk, {url, signed_url}})},
      {"service_messages", "error", Written(SrvRply{Error::kParseError, {}})},
      {"registration_messages", "registration",
       Written(SrvReg{url, "service:x:y", "DEFAULT", "(a=1,2),(b=\\FF\\01),c", {}}, true,
               {{kExtensionProcessId, {0, 0, 0, 17}}})},
      {"registration_messages", "signed",
       Written(SrvReg{signed_url, "service:x", "DEFAULT", "", {kSignature, kSignature}})},
      {"registration_messages", "deregistration", Written(SrvDereg{"DEFAULT", url, "a*,b"})},
      {"registration_messages", "acknowledgment", Written(SrvAck{Error::kInvalidUpdate})},
      {"attribute_messages", "request",
       Written(AttrRqst{"10.0.0.3", "service:x:y://h:1/p", "DEFAULT", "a,b*", ""})},
      {"attribute_messages", "reply", Written(AttrRply{Error::kOk, "(a=1,2),c", {kSignature}})},
      {"type_messages", "request_all", Written(SrvTypeRqst{"", std::nullopt, "DEFAULT"})},
      {"type_messages", "request_iana", Written(SrvTypeRqst{"10.0.0.3", "", "DEFAULT"})},
      {"type_messages", "reply", Written(SrvTypeRply{Error::kOk, "service:x:y,service:x.tamro"})},
      {"advertisements", "directory_agent",
       Written(DaAdvert{Error::kOk, 1, "service:directory-agent://h", "DEFAULT", "(a=1)", "", {kSignature}})},
      {"advertisements", "service_agent",
       Written(SaAdvert{"service:service-agent://h", "DEFAULT", "(service-type=service:x)", {}}, false,
               {{0x8001, {1, 2, 3}}, {0x8002, {}}})},
  };
}

/// A step of the target request_handler.
Bytes Step(std::uint8_t origin, std::uint8_t seconds, const Bytes& message) {
  Bytes step{origin, seconds, static_cast<std::uint8_t>(message.size() >> 8U),
             static_cast<std::uint8_t>(message.size())};
  step.insert(step.end(), message.begin(), message.end());
  return step;
}

Bytes Joined(const std::vector<Bytes>& parts) {
  Bytes joined;
  for (const Bytes& part : parts) {
    joined.insert(joined.end(), part.begin(), part.end());
  }
  return joined;
}

std::vector<Seed> SessionSeeds() {
  const UrlEntry url{300, "service:x:y://n:1/p", {}};
  const UrlEntry known{0, "service:x:http://h:1/1", {}};
  const Bytes fresh = Written(SrvReg{url, "service:x:y", "DEFAULT,TAMRO", "(a=1,2),(b=\\FF\\01),c", {}}, true,
                              {{kExtensionProcessId, {0, 0, 0, 17}}});
  const Bytes update = Written(SrvReg{url, "service:x:y", "DEFAULT,TAMRO", "(a=3)", {}});
  const Bytes search = Written(SrvRqst{"", "service:x", "DEFAULT", "(|(a>=3)(b=x*))", ""});
  const Bytes attributes = Written(AttrRqst{"", "service:x", "DEFAULT,TAMRO", "a,b*", ""});
  const Bytes types = Written(SrvTypeRqst{"", std::nullopt, "DEFAULT"});
  return {
      {"request_handler", "registered_found_removed",
       Joined({Step(0, 0, fresh), Step(1, 1, update), Step(3, 1, search), Step(4, 0, attributes),
               Step(0, 1, Written(SrvDereg{"DEFAULT,TAMRO", url, "a"})),
               Step(0, 200, Written(SrvDereg{"DEFAULT,TAMRO", url, ""}))})},
      {"request_handler", "asked_from_everywhere",
       Joined({Step(0, 0, search), Step(1, 0, search), Step(2, 0, search), Step(3, 0, search),
               Step(4, 0, search), Step(2, 250, attributes), Step(2, 250, types)})},
      {"request_handler", "known_service",
       Joined({Step(1, 0, Written(AttrRqst{"10.0.0.3", known.url, "DEFAULT", "", ""})),
               Step(0, 0, Written(SrvDereg{"DEFAULT", known, "b*"})),
               Step(0, 0, Written(SrvDereg{"DEFAULT", known, ""}))})},
      {"request_handler", "registered_with_a_directory_agent",
       Joined({Step(0x85, 0, fresh), Step(0x85, 1, update), Step(0x82, 1, search),
               Step(0x82, 0, Written(SrvRqst{"", "service:directory-agent", "DEFAULT", "", ""})),
               Step(0x85, 1, Written(SrvDereg{"DEFAULT,TAMRO", url, ""}))})},
      {"request_handler", "agents",
       Joined(
           {Step(2, 0, Written(SrvRqst{"", "service:service-agent", "", "(service-type=*)", ""})),
            Step(2, 0, Written(SrvRqst{"10.0.0.1", "service:directory-agent", "", "", ""})),
            Step(2, 0,
                 Written(DaAdvert{Error::kOk, 1, "service:directory-agent://h", "DEFAULT", "", "", {}}))})},
  };
}

Seed StreamSeed() {
  Bytes stream{6};
  const Bytes message = Written(SrvTypeRqst{"", "", "DEFAULT"});
  stream.insert(stream.end(), message.begin(), message.end());
  stream.insert(stream.end(), message.begin(), message.end());
  stream.insert(stream.end(), message.begin(), message.begin() + 13);
  return {"message_stream", "two_and_a_half", stream};
}

bool Write(const std::filesystem::path& folder, const Seed& seed) {
  std::filesystem::create_directories(folder / seed.target);
  std::ofstream file(folder / seed.target / seed.name, std::ios::binary);
  file.write(reinterpret_cast<const char*>(seed.bytes.data()),
             static_cast<std::streamsize>(seed.bytes.size()));
  return file.good();
}

}  // namespace
}  // namespace slp

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: make_seeds FOLDER\n";
    return 2;
  }
  std::vector<slp::Seed> seeds = slp::MessageSeeds();
  for (const slp::Seed& seed : slp::SessionSeeds()) {
    seeds.push_back(seed);
  }
  seeds.push_back(slp::StreamSeed());
  for (const slp::Seed& seed : seeds) {
    if (!slp::Write(arguments[1], seed)) {
      std::cerr << seed.target << '/' << seed.name << " cannot be written\n";
      return 1;
    }
  }
  return 0;
}
