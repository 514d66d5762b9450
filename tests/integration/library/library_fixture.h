// A daemon on loopback, and the library of this process set up to use it. Every test runs in a process of its
// own, so the library starts fresh.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "support/slpd_process/slpd_process.h"

namespace kelsd::integration {

/// One entry of a registration file.
struct Announced {
  std::string url;
  std::string scope = "tamro";
  std::vector<std::string> attributes = {};  ///< "tag=value", escaped
};

std::string RegistrationFile(const std::vector<Announced>& services);

/// The services of the family that most tests use: two servers, a terminal and two service hosts.
std::vector<Announced> FamilyServices();

class LibraryTest : public testing::Test {
 protected:
  /// Starts the daemon with these services, in the scopes TAMRO and LAB, and initialises the library with its
  /// configuration file.
  void Serve(const std::vector<Announced>& services);

  /// Initialises the library with a configuration of a port that nobody serves.
  void ServeNothing();

  const slp::support::SlpdProcess& daemon() const { return *daemon_; }
  slp::support::SlpdProcess& daemon() { return *daemon_; }

 private:
  std::unique_ptr<slp::support::SlpdProcess> daemon_;
};

std::vector<std::string> Urls(const std::vector<SKelServiceSearchResult>& services);

MATCHER(Succeeded, "is a success") {
  *result_listener << arg.ToString();
  return arg.IsOk();
}

}  // namespace kelsd::integration
