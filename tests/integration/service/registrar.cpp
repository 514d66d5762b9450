// An application of its own that registers one service and keeps it registered until it is killed, for two
// minutes at most. Arguments: URL, lifetime in seconds, check interval in milliseconds, a file: it begins to
// look after its service when that is there.
#include <chrono>
#include <climits>
#include <filesystem>
#include <iostream>
#include <map>
#include <string>
#include <thread>

#include "kelsd/CKelSLPService.h"
#include "support/wait_until.h"

namespace {

constexpr int kArguments = 5;
constexpr std::chrono::minutes kSpan{2};

}  // namespace

int main(int argc, char** argv) {
  if (argc != kArguments) {
    std::cerr << "usage: registrar URL LIFETIME INTERVAL FILE\n";
    return 2;
  }
  const auto end = std::chrono::steady_clock::now() + kSpan;
  kelsd::SResult result = kelsd::CKelSLP::Initialize();
  if (result.IsOk()) {
    result = kelsd::CKelSLPService::SetRegistrationCheckInterval(INT_MAX);
  }
  if (result.IsOk()) {
    result = kelsd::CKelSLPService::RegisterService(argv[1], static_cast<unsigned short>(std::stoi(argv[2])),
                                                    std::map<std::string, std::string>(), {});
  }
  std::cout << (result.IsOk() ? "registered" : result.ToString()) << std::endl;
  if (result.IsOk() && kelsd::support::WaitUntil([&] { return std::filesystem::exists(argv[4]); }, kSpan)) {
    result = kelsd::CKelSLPService::SetRegistrationCheckInterval(std::stoi(argv[3]));
    std::this_thread::sleep_until(end);
  }
  return result.IsOk() ? 0 : 1;
}
