// Several daemons on loopback addresses of their own, all at one port, as hosts of a network are; and this
// process as a program of one of these hosts. One thread.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "slp.h"
#include "support/free_port.h"
#include "support/slpd_process/slpd_process.h"

namespace slp::integration {

class DirectoryTest : public testing::Test {
 protected:
  using Milliseconds = std::chrono::milliseconds;
  using Daemon = std::unique_ptr<support::SlpdProcess>;

  /// Searches of this process leave by 127.0.0.2, where its daemon is.
  DirectoryTest();
  ~DirectoryTest() override;

  Daemon StartServiceAgent(const std::string& address, const std::string& registrations = {},
                           const std::string& configuration = {}) const;
  Daemon StartDirectoryAgent(const std::string& address, const std::string& configuration = {}) const;

  /// An entry of a registration file that lasts.
  static std::string Service(const std::string& url);

  /// What a search finds, sorted.
  std::vector<std::string> Find(const std::string& type, const std::string& scopes = "") const;

  /// What the agent at `address` alone answers.
  std::vector<std::string> FindAt(const std::string& address, const std::string& type) const;

  /// How long a search of another process takes, on the host of `daemon`, and what it finds.
  static Milliseconds TimeOfProgram(const support::SlpdProcess& daemon, const std::string& type,
                                    const std::string& url, const std::string& scope = "DEFAULT");

  /// Expects that a search for "service:x" on the host of `daemon` finds these, and sooner than one that asks
  /// everyone.
  void ExpectAnsweredByAgents(const support::SlpdProcess& daemon, const std::string& scope,
                              const std::vector<std::string>& urls) const;

  SLPError Register(const std::string& url) const;
  SLPError Deregister(const std::string& url) const;

  /// Whether the agent at `address` comes to answer with exactly these within some seconds.
  bool ComesToHave(const std::string& address, const std::string& type,
                   const std::vector<std::string>& urls) const;

  /// How long `action` takes.
  static Milliseconds TimeOf(const std::function<void()>& action);

 private:
  Daemon Start(const std::string& address, const std::string& registrations,
               const std::string& configuration) const;

  std::uint16_t port_ = support::FreePort("127.0.0.2");
  SLPHandle handle_ = nullptr;
};

}  // namespace slp::integration
