#include "slpd/server/directory_names.h"

#include <algorithm>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <map>
#include <optional>
#include <utility>

#include "text/string_list.h"

namespace slp {

// 1. The names of a round are looked up side by side, on threads that nobody waits for; other addresses than
// before are told.
// 2. Behind the last answer the next round is planned, as soon as the name that is due first wants it.
// 3. Other names begin a round anew; what was under way for the earlier ones counts no more.
class DirectoryNames::Impl : public std::enable_shared_from_this<DirectoryNames::Impl> {
 public:
  Impl(asio::io_context& io, Log& log, std::function<void()> changed, HostLookups::Resolve resolve,
       Instant first_retry)
      : io_(io),
        timer_(io),
        log_(log),
        changed_(std::move(changed)),
        resolve_(std::move(resolve)),
        first_retry_(first_retry) {}

  void Apply(const std::vector<std::string>& names, bool ipv6, Seconds again) {
    if (names == names_ && ipv6 == ipv6_ && again == again_) {
      return;
    }
    names_ = names;
    ipv6_ = ipv6;
    again_ = again;
    std::erase_if(addresses_, [&](const auto& entry) { return !ListContains(names_, entry.first); });
    ++round_;
    lookups_.reset();
    timer_.cancel();
    told_ = Addresses();
    retries_.clear();
    // By way of the loop: the threads are to begin with the rights that the daemon serves with.
    asio::post(io_, [weak = weak_from_this(), round = round_] {
      if (const auto self = weak.lock(); self && self->round_ == round) {
        self->BeginRound();
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
  void BeginRound() {
    missing_ = names_.size();
    if (missing_ == 0) {
      return;
    }
    lookups_.emplace(
        [this, round = round_](const HostQuery& query, const HostAnswer& answer) {
          asio::post(io_, [weak = weak_from_this(), round, query, answer] {
            if (const auto self = weak.lock(); self && self->round_ == round) {
              self->Take(query.name, answer);
            }
          });
        },
        resolve_);
    for (const std::string& name : names_) {
      lookups_->Begin({name, ipv6_});
    }
  }

  void Take(const std::string& name, const HostAnswer& answer) {
    if (answer.error) {
      TakeFailure(name, answer.error);
    } else {
      retries_.erase(name);
      std::vector<std::string>& addresses = addresses_[name];
      addresses.clear();
      for (const asio::ip::address& address : answer.addresses) {
        addresses.push_back(address.to_string());
      }
      TellOfChange();
    }
    if (--missing_ == 0) {
      PlanRound();
    }
  }

  void TakeFailure(const std::string& name, const asio::error_code& error) {
    const auto [retry, first] = retries_.try_emplace(name, first_retry_);
    if (first) {
      log_.Write(LogKind::kProblem, "net.slp.DAAddresses names " + name + ", which is not found: " +
                                        error.message() + "; looking again until it is");
    } else {
      retry->second = std::min<Instant>(retry->second * 2, again_);
    }
  }

  void PlanRound() {
    Instant wait = again_;
    for (const auto& [name, retry] : retries_) {
      wait = std::min(wait, retry);
    }
    timer_.expires_after(wait);
    timer_.async_wait([weak = weak_from_this(), round = round_](const asio::error_code& error) {
      if (const auto self = weak.lock(); self && !error && self->round_ == round) {
        self->BeginRound();
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
  asio::steady_timer timer_;
  Log& log_;
  const std::function<void()> changed_;
  const HostLookups::Resolve resolve_;
  const Instant first_retry_;
  std::vector<std::string> names_;
  bool ipv6_ = false;
  Seconds again_{0};
  std::map<std::string, std::vector<std::string>> addresses_;  ///< by name
  std::map<std::string, Instant> retries_;                     ///< the waits of those that are not found
  std::vector<std::string> told_;
  unsigned round_ = 0;
  std::size_t missing_ = 0;  ///< answers of this round
  std::optional<HostLookups> lookups_;
};

DirectoryNames::DirectoryNames(asio::io_context& io, Log& log, std::function<void()> changed,
                               HostLookups::Resolve resolve, Instant first_retry)
    : impl_(std::make_shared<Impl>(io, log, std::move(changed), std::move(resolve), first_retry)) {}

DirectoryNames::~DirectoryNames() = default;

void DirectoryNames::Apply(const std::vector<std::string>& names, bool ipv6, Seconds again) {
  impl_->Apply(names, ipv6, again);
}

std::vector<std::string> DirectoryNames::Addresses() const {
  return impl_->Addresses();
}

}  // namespace slp
