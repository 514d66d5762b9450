// An application of its own that registers one service and keeps it registered until it is killed, for two
// minutes at most. Arguments: URL, lifetime in seconds, check interval in milliseconds.
#include <chrono>
#include <iostream>
#include <map>
#include <string>
#include <thread>

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
  if (result.IsOk()) {
    std::this_thread::sleep_for(std::chrono::minutes(2));
  }
  return result.IsOk() ? 0 : 1;
}
