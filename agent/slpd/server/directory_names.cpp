#include "slpd/server/directory_names.h"

#include <asio/ip/udp.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <map>
#include <utility>

#include "text/string_list.h"

namespace slp {

using asio::ip::udp;

// 1. One name is looked up after the other, on the resolver's own thread; other addresses than before are
// told.
// 2. Behind the last one the next round is planned.
// 3. Other names begin a round anew; what was under way for the earlier ones counts no more.
class DirectoryNames::Impl : public std::enable_shared_from_this<DirectoryNames::Impl> {
 public:
  Impl(asio::io_context& io, Log& log, std::function<void()> changed)
      : io_(io), resolver_(io), timer_(io), log_(log), changed_(std::move(changed)) {}

  void Apply(const std::vector<std::string>& names, Seconds again) {
    if (names == names_ && again == again_) {
      return;
    }
    names_ = names;
    again_ = again;
    std::erase_if(addresses_, [&](const auto& entry) { return !ListContains(names_, entry.first); });
    ++round_;
    resolver_.cancel();
    timer_.cancel();
    told_ = Addresses();
    // By way of the loop: the resolver's thread is to begin with the rights that the daemon serves with.
    asio::post(io_, [weak = weak_from_this(), round = round_] {
      if (const auto self = weak.lock(); self && self->round_ == round) {
        self->LookUp(0, round);
      }
    });
  }

  std::vector<std::string> Addresses() const {
    std::vector<std::string> all;
    for (const auto& [name, addresses] : addresses_) {
      all = ListUnion(std::move(all), addresses);
    }
    return all;
  }

 private:
  void LookUp(std::size_t index, unsigned round) {
    if (index == names_.size()) {
      return FinishRound(round);
    }
    resolver_.async_resolve(udp::v4(), names_[index], "",
                            [weak = weak_from_this(), index, round](
                                const asio::error_code& error, const udp::resolver::results_type& results) {
                              if (const auto self = weak.lock(); self && self->round_ == round) {
                                self->Take(self->names_[index], error, results);
                                self->TellOfChange();
                                self->LookUp(index + 1, round);
                              }
                            });
  }

  void Take(const std::string& name, const asio::error_code& error,
            const udp::resolver::results_type& results) {
    if (error) {
      log_.Write(LogKind::kProblem, "net.slp.DAAddresses names " + name +
                                        ", which is not found: " + error.message() + "; looking again in " +
                                        std::to_string(again_.count()) + " seconds");
      return;
    }
    std::vector<std::string>& addresses = addresses_[name];
    addresses.clear();
    for (const auto& result : results) {
      addresses = ListUnion(std::move(addresses), {result.endpoint().address().to_string()});
    }
  }

  void FinishRound(unsigned round) {
    if (names_.empty()) {
      return;
    }
    timer_.expires_after(again_);
    timer_.async_wait([weak = weak_from_this(), round](const asio::error_code& error) {
      if (const auto self = weak.lock(); self && !error && self->round_ == round) {
        self->LookUp(0, round);
      }
    });
  }

  void TellOfChange() {
    if (std::vector<std::string> now = Addresses(); now != told_) {
      told_ = std::move(now);
      changed_();
    }
  }

  asio::io_context& io_;
  udp::resolver resolver_;
  asio::steady_timer timer_;
  Log& log_;
  const std::function<void()> changed_;
  std::vector<std::string> names_;
  Seconds again_{0};
  std::map<std::string, std::vector<std::string>> addresses_;  ///< by name
  std::vector<std::string> told_;
  unsigned round_ = 0;
};

DirectoryNames::DirectoryNames(asio::io_context& io, Log& log, std::function<void()> changed)
    : impl_(std::make_shared<Impl>(io, log, std::move(changed))) {}

DirectoryNames::~DirectoryNames() = default;

void DirectoryNames::Apply(const std::vector<std::string>& names, Seconds again) {
  impl_->Apply(names, again);
}

std::vector<std::string> DirectoryNames::Addresses() const {
  return impl_->Addresses();
}

}  // namespace slp
