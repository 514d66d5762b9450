#include "slpd/directory/registration_queue.h"

namespace slp {

void RegistrationQueue::Register(std::string_view url, std::string_view language) {
  jobs_.insert_or_assign(Key(url, language), std::nullopt);
}

void RegistrationQueue::Deregister(std::string_view url, std::string_view language, std::string_view scopes) {
  jobs_.insert_or_assign(Key(url, language), std::string(scopes));
}

void RegistrationQueue::Forget(std::string_view url, std::string_view language) {
  jobs_.erase(Key(url, language));
}

std::optional<RegistrationQueue::Job> RegistrationQueue::Next() {
  if (jobs_.empty()) {
    return std::nullopt;
  }
  auto node = jobs_.extract(jobs_.begin());
  return Job{std::move(node.key().first), std::move(node.key().second), std::move(node.mapped())};
}

}  // namespace slp
