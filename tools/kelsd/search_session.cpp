#include "search_session.h"

#include <filesystem>

#include "address_option.h"
#include "kelsd/CKelSLPClient.h"
#include "terminal.h"

namespace kelsd_tool {

using kelsd::CKelSLPClient;
using kelsd::CKelSLPClientConfig;
using kelsd::SResult;

void SearchSession::AddCommonOptions(CLI::App& verb) {
  verb.add_option("--config", config_file_,
                  "SLP configuration file to use, in place of the one that OpenSLPConfig names")
      ->type_name("FILE")
      ->check(CLI::Validator(CLI::ExistingFile).description(""));
  verb.add_flag("--json", json_, "JSON for programs instead of a table");
}

void SearchSession::AddSearchOptions(CLI::App& verb) {
  verb.add_option("--timeout", timeout_, "longest wait of the whole search in milliseconds (at least 1252)")
      ->type_name("MS");
  verb.add_option("--interface", interfaces_, "send from this address of the host only (may be repeated)")
      ->type_name("ADDRESS")
      ->check(IpAddressOnly())
      ->allow_extra_args(false);
  AddCommonOptions(verb);
}

void SearchSession::UseConfiguration() const {
  if (!config_file_.empty()) {
    // The daemon, which is started elsewhere, reads it too.
    SetEnvironment("OpenSLPConfig", std::filesystem::absolute(config_file_).string());
  }
}

std::optional<ExitStatus> SearchSession::Open(Console& console) {
  if (const SResult initialised = Initialize(); initialised.IsNotOk()) {
    return console.Fail(initialised);
  }
  return ApplyClientConfig(console);
}

SResult SearchSession::Initialize() const {
  UseConfiguration();
  return kelsd::CKelSLP::Initialize();
}

std::optional<ExitStatus> SearchSession::ApplyClientConfig(Console& console) {
  if (!timeout_ && interfaces_.empty()) {
    return std::nullopt;
  }
  CKelSLPClientConfig config;
  std::vector<SResult> problems;
  if (const SResult read = CKelSLPClient::GetSLPClientConfig(config, problems); read.IsNotOk()) {
    return console.Fail(read);
  }
  if (timeout_) {
    if (const SResult set = config.SetTimeout(*timeout_); set.IsNotOk()) {
      console.PrintError(set);
      return kUsage;
    }
  }
  if (!interfaces_.empty()) {
    config.SetInterfaces(interfaces_);
  }
  if (const SResult applied = CKelSLPClient::SetSLPClientConfig(config); applied.IsNotOk()) {
    return console.Fail(applied);
  }
  return std::nullopt;
}

}  // namespace kelsd_tool
