// A program of one host: searches for services and prints their URLs sorted, one a line, or registers one.
// Usage: network_program find TYPE [ADDRESS of the only agent to ask]
//        network_program register URL
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "slp.h"

namespace {

constexpr unsigned short kLifetime = 600;

SLPBoolean SLPCALLBACK Collect(SLPHandle, const char* url, unsigned short, SLPError error, void* cookie) {
  if (error == SLP_OK) {
    static_cast<std::vector<std::string>*>(cookie)->emplace_back(url);
  }
  return SLP_TRUE;
}

void SLPCALLBACK Ignore(SLPHandle, SLPError, void*) {}

SLPError Find(SLPHandle handle, const std::string& type, const std::string& address) {
  if (!address.empty()) {
    const SLPError error = SLPAssociateIP(handle, address.c_str());
    if (error != SLP_OK) {
      return error;
    }
  }
  std::vector<std::string> urls;
  const SLPError error = SLPFindSrvs(handle, type.c_str(), "", "", Collect, &urls);
  std::sort(urls.begin(), urls.end());
  for (const std::string& url : urls) {
    std::cout << url << "\n";
  }
  return error;
}

}  // namespace

int main(int argument_count, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + argument_count);
  if (words.size() < 2) {
    std::cerr << "usage: network_program find TYPE [ADDRESS] | register URL\n";
    return 2;
  }
  SLPHandle handle = nullptr;
  SLPError error = SLPOpen("en", SLP_FALSE, &handle);
  if (error == SLP_OK && words[0] == "find") {
    error = Find(handle, words[1], words.size() > 2 ? words[2] : "");
  } else if (error == SLP_OK) {
    // The service is to outlive this process.
    SLPSetProperty("net.slp.watchRegistrationPID", "false");
    error = SLPReg(handle, words[1].c_str(), kLifetime, nullptr, "", SLP_TRUE, Ignore, nullptr);
  }
  SLPClose(handle);
  if (error != SLP_OK) {
    std::cerr << "error " << error << "\n";
  }
  return error == SLP_OK ? 0 : 1;
}
