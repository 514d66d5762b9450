#include "slpd/directory/registration_queue.h"

#include <vector>

#include "text/string_list.h"

namespace slp {

void RegistrationQueue::Register(std::string_view url, std::string_view language) {
  jobs_.try_emplace(Key(url, language), std::nullopt);
}

void RegistrationQueue::Deregister(std::string_view url, std::string_view language, std::string_view scopes) {
  std::optional<std::string>& left = jobs_[Key(url, language)];
  std::vector<std::string> all = SplitStringList(left.value_or(""));
  for (std::string& scope : SplitStringList(scopes)) {
    if (!ListContains(all, scope)) {
      all.push_back(std::move(scope));
    }
  }
  left = JoinStringList(all);
}

void RegistrationQueue::Forget(std::string_view url, std::string_view language) {
  jobs_.erase(Key(url, language));
}

void RegistrationQueue::KeepDeregistrations() {
  std::erase_if(jobs_, [](const auto& job) { return !job.second; });
}

std::optional<RegistrationQueue::Job> RegistrationQueue::Next() {
  if (jobs_.empty()) {
    return std::nullopt;
  }
  auto node = jobs_.extract(jobs_.begin());
  return Job{std::move(node.key().first), std::move(node.key().second), std::move(node.mapped())};
}

}  // namespace slp
