// A program of one host: searches for services and prints their URLs sorted, one a line, or the attributes of
// one, or registers one; or tells by how much the machine is late. Usage:
//        network_program find TYPE [ADDRESS of the only agent to ask]
//        network_program attributes URL [ADDRESS of the only agent to ask]
//        network_program register URL [ATTRIBUTES [LIFETIME]]
//        network_program delay
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "slp.h"
#include "support/machine_delay.h"

namespace {

constexpr unsigned short kLifetime = 600;

SLPBoolean SLPCALLBACK Collect(SLPHandle, const char* url, unsigned short, SLPError error, void* cookie) {
  if (error == SLP_OK) {
    static_cast<std::vector<std::string>*>(cookie)->emplace_back(url);
  }
  return SLP_TRUE;
}

SLPBoolean SLPCALLBACK Print(SLPHandle, const char* attributes, SLPError error, void*) {
  if (error == SLP_OK) {
    std::cout << attributes << "\n";
  }
  return SLP_TRUE;
}

void SLPCALLBACK Ignore(SLPHandle, SLPError, void*) {}

SLPError Find(SLPHandle handle, const std::string& type) {
  std::vector<std::string> urls;
  const SLPError error = SLPFindSrvs(handle, type.c_str(), "", "", Collect, &urls);
  std::sort(urls.begin(), urls.end());
  for (const std::string& url : urls) {
    std::cout << url << "\n";
  }
  return error;
}

SLPError Register(SLPHandle handle, const std::vector<std::string>& words) {
  const std::string attributes = words.size() > 2 ? words[2] : "";
  const unsigned short lifetime =
      words.size() > 3 ? static_cast<unsigned short>(std::stoul(words[3])) : kLifetime;
  // The service is to outlive this process.
  SLPSetProperty("net.slp.watchRegistrationPID", "false");
  return SLPReg(handle, words[1].c_str(), lifetime, nullptr, attributes.c_str(), SLP_TRUE, Ignore, nullptr);
}

SLPError Run(SLPHandle handle, const std::vector<std::string>& words) {
  if (words[0] == "register") {
    return Register(handle, words);
  }
  if (words.size() > 2) {
    const SLPError error = SLPAssociateIP(handle, words[2].c_str());
    if (error != SLP_OK) {
      return error;
    }
  }
  return words[0] == "find" ? Find(handle, words[1])
                            : SLPFindAttrs(handle, words[1].c_str(), "", "", Print, nullptr);
}

// Answers each line with the milliseconds that the machine has added to sleeps since the start.
int TellDelay() {
  kelsd::support::MachineDelay delay;
  std::string line;
  while (std::getline(std::cin, line)) {
    std::cout << delay.Total().count() << std::endl;
  }
  return 0;
}

}  // namespace

int main(int argument_count, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + argument_count);
  if (words == std::vector<std::string>{"delay"}) {
    return TellDelay();
  }
  if (words.size() < 2) {
    std::cerr << "usage: network_program find TYPE [ADDRESS] | attributes URL [ADDRESS] |"
                 " register URL [ATTRIBUTES [LIFETIME]] | delay\n";
    return 2;
  }
  SLPHandle handle = nullptr;
  SLPError error = SLPOpen("en", SLP_FALSE, &handle);
  if (error == SLP_OK) {
    error = Run(handle, words);
  }
  SLPClose(handle);
  if (error != SLP_OK) {
    std::cerr << "error " << error << "\n";
  }
  return error == SLP_OK ? 0 : 1;
}
