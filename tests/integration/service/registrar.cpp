// An application of its own that registers one service and keeps it registered until its input ends.
// Arguments: URL, lifetime in seconds, check interval in milliseconds.
#include <iostream>
#include <map>
#include <string>

#include "kelsd/CKelSLPService.h"

int main(int argc, char** argv) {
  constexpr int kArguments = 4;
  if (argc != kArguments) {
    std::cerr << "usage: registrar URL LIFETIME INTERVAL\n";
    return 2;
  }
  kelsd::SResult result = kelsd::CKelSLP::Initialize();
  if (result.IsOk()) {
    result = kelsd::CKelSLPService::SetRegistrationCheckInterval(std::stoi(argv[3]));
  }
  if (result.IsOk()) {
    result = kelsd::CKelSLPService::RegisterService(argv[1], static_cast<unsigned short>(std::stoi(argv[2])),
                                                    std::map<std::string, std::string>(), {});
  }
  std::cout << (result.IsOk() ? "registered" : result.ToString()) << std::endl;
  std::string line;
  while (result.IsOk() && std::getline(std::cin, line)) {
  }
  return result.IsOk() ? 0 : 1;
}
