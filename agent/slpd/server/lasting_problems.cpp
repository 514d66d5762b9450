#include "slpd/server/lasting_problems.h"

#include <algorithm>
#include <utility>

namespace slp {

void LastingProblems::Start(const std::vector<std::string>& problems, Instant now) {
  present_.clear();
  for (const std::string& problem : problems) {
    present_.insert({problem, {now, true}});
  }
}

std::vector<std::string> LastingProblems::Review(const std::vector<std::string>& problems, Instant now) {
  const std::map<std::string, State> before = std::exchange(present_, {});
  std::vector<std::string> to_tell;
  for (const std::string& problem : problems) {
    const auto known = before.find(problem);
    State state = known == before.end() ? State{now, false} : known->second;
    if (!state.told && now - state.since >= kLasting) {
      state.told = true;
      to_tell.push_back(problem);
    }
    present_.insert({problem, state});
  }
  return to_tell;
}

std::vector<std::string> LastingProblems::Add(const std::vector<std::string>& problems, Instant now) {
  std::vector<std::string> to_tell;
  for (const std::string& problem : problems) {
    State& state = present_.insert({problem, {now, false}}).first->second;
    if (!std::exchange(state.told, true)) {
      to_tell.push_back(problem);
    }
  }
  return to_tell;
}

std::optional<Seconds> LastingProblems::ReviewAfter(Instant now) const {
  if (present_.empty()) {
    return std::nullopt;
  }
  const bool one_is_new = std::any_of(present_.begin(), present_.end(),
                                      [now](const auto& one) { return now - one.second.since < kNew; });
  return one_is_new ? kSoon : kLater;
}

}  // namespace slp
