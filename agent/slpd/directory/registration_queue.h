// What one directory agent has still to be told of the own services. Holds names, not services: what is sent
// is what is registered when its turn comes, so that changes in quick succession are told once. One thread at
// a time.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace slp {

class RegistrationQueue {
 public:
  struct Job {
    std::string url;
    std::string language;
    std::optional<std::string> deregister;  ///< the scopes that it may still be registered in, and has left
    bool operator==(const Job&) const = default;
  };

  /// Scopes that it has left stay to be told of, should it have none any more that the agent serves.
  void Register(std::string_view url, std::string_view language);
  void Deregister(std::string_view url, std::string_view language, std::string_view scopes);

  /// There is nothing to be told any more: the agent lets it expire by itself.
  void Forget(std::string_view url, std::string_view language);

  /// What has only come is not to be told any more.
  void KeepDeregistrations();

  bool empty() const { return jobs_.empty(); }

  /// Takes the next one out; none when there is nothing to do.
  std::optional<Job> Next();

 private:
  using Key = std::pair<std::string, std::string>;  // URL and language
  std::map<Key, std::optional<std::string>> jobs_;
};

}  // namespace slp
