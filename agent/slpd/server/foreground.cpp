#include "slpd/server/foreground.h"

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <iostream>
#include <span>
#include <utility>

#include "slpd/server/daemon.h"
#include "slpd/server/signals.h"
#include "slpd/server/supervisor.h"

namespace slp {
namespace {

class SignalSupervisor : public Supervisor {
 public:
  explicit SignalSupervisor(asio::io_context& io) : stop_(io), reload_(io) {}

  void Follow(Orders orders) override {
    orders_ = std::move(orders);
    Add(stop_, StopSignals());
    stop_.async_wait([this](const asio::error_code& error, int) {
      if (!error) {
        orders_.stop();
      }
    });
    Add(reload_, ReloadSignals());
    WaitForReload();
  }

  void OnProgress() override {}
  void OnServing() override {}
  void OnEnding() override {}
  // The last line on the error output, where whoever started the program finds it.
  void OnFailure(const std::string& reason) override { std::cerr << "slpd: " << reason << std::endl; }
  void OnProblem(std::string_view) override {}

 private:
  static void Add(asio::signal_set& set, std::span<const int> signals) {
    for (const int signal : signals) {
      set.add(signal);
    }
  }

  void WaitForReload() {
    reload_.async_wait([this](const asio::error_code& error, int) {
      if (!error) {
        orders_.reload();
        WaitForReload();
      }
    });
  }

  asio::signal_set stop_;
  asio::signal_set reload_;
  Orders orders_;
};

}  // namespace

ExitStatus RunInForeground(const CommandLine& command_line) {
  asio::io_context io{1};
  SignalSupervisor supervisor(io);
  return Daemon(command_line, io, supervisor).Run();
}

}  // namespace slp
