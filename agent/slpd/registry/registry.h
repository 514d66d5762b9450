// All registered services, indexed by URL, by service type (concrete and abstract) and by attribute value, so
// that a search touches only what can match. Keeps no reference into what it was given. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "slpd/event_sink.h"
#include "slpd/registry/registration.h"
#include "slpd/registry/type_groups.h"
#include "slpd/seconds.h"
#include "text/effort.h"
#include "text/predicate.h"
#include "text/service_type.h"

namespace slp {

/// Which services a request asks for.
struct ServiceQuery {
  ServiceType type;
  std::vector<std::string> scopes;  ///< one in common is enough
  std::string language = "en";
  Predicate predicate;
};

/// The attributes that an answer carries.
struct AttributeAnswer {
  std::string attributes;
  bool cut = false;  ///< more than the limit was there; what is given is whole attributes
};

class Registry {
 public:
  /// What the registry holds at most; a registration beyond it is refused with kInternalError.
  struct Capacity {
    std::size_t registrations = 1'000'000;
    std::size_t bytes = std::size_t{1024} * 1024 * 1024;  ///< of the heap, as they are reckoned, indexes too
    std::size_t languages_per_url = 64;                   ///< each is looked at for each of the others
  };

  /// `events` must outlive the registry.
  explicit Registry(EventSink& events);
  Registry(EventSink& events, Capacity capacity);
  ~Registry();

  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  /// A fresh registration: takes the place of one of the same URL in the same language (RFC 2608
  /// section 8.3). kInvalidRegistration for a URL, type, language, lifetime or attribute list that is not
  /// one, kScopeNotSupported without a valid scope, kDaBusyNow when its host would take more than its
  /// share; nothing is stored then.
  ///
  /// What a message says goes before the registration file: a message's registration covers the file's one of
  /// the same URL and language, whichever came first, and when it has left the file's one is there again,
  /// with the rest of its own lifetime.
  Error Register(const Registration& registration, Instant now);

  /// An incremental registration (RFC 2608 section 9.3). kInvalidUpdate when nothing is registered under the
  /// URL in this language or with another type, kScopeNotSupported for other scopes, else as Register.
  Error Update(const Registration& registration, Instant now);

  /// Without `tag_patterns` the service goes in all its languages, else only the attributes that match.
  /// `scopes` must contain all scopes of the service, or kScopeNotSupported; kInvalidRegistration for an
  /// unknown URL. kInternalError when `effort` does not suffice for the comparisons: nothing has changed
  /// then.
  Error Deregister(std::string_view url, const std::vector<std::string>& scopes,
                   const std::vector<std::string>& tag_patterns, Effort& effort);

  /// Shows each matching URL once with the seconds that it has left, until `visit` returns false.
  /// kLanguageNotSupported when the predicate asks for attributes, the type is there in the scopes, but not
  /// in the language (RFC 2608 section 8.1). kInternalError when `effort` does not suffice for the
  /// comparisons: what was shown until then is not the answer.
  Error FindServices(const ServiceQuery& query, Instant now, Effort& effort,
                     const std::function<bool(std::string_view url, std::uint16_t lifetime)>& visit) const;

  /// The attributes of one URL, empty when it is not registered in the scopes; no patterns: all of them.
  /// kInternalError when `effort` does not suffice.
  Result<AttributeAnswer> FindAttributesOfUrl(std::string_view url, const std::vector<std::string>& scopes,
                                              std::string_view language,
                                              const std::vector<std::string>& tag_patterns,
                                              Effort& effort) const;

  /// The attributes of all services of a type, each tag and value once (RFC 2608 section 10.4), up to `limit`
  /// bytes. kInternalError when `effort` does not suffice.
  Result<AttributeAnswer> FindAttributesOfType(const ServiceType& type,
                                               const std::vector<std::string>& scopes,
                                               std::string_view language,
                                               const std::vector<std::string>& tag_patterns,
                                               std::size_t limit, Effort& effort) const;

  /// The types with a service in the scopes, sorted. `naming_authority`: none for all of them, "" for IANA.
  std::vector<std::string> FindTypes(const std::vector<std::string>& scopes,
                                     const std::optional<std::string>& naming_authority) const;

  /// The groups in which requests for the types that are there are heard.
  const TypeGroups& type_groups() const;

  /// Removes what has reached its end: a lifetime of L given at t ends at t+L, or up to an ExpiryStep later,
  /// never earlier.
  void Expire(Instant now);

  /// When Expire has something to do next; none when nothing expires.
  std::optional<Instant> NextExpiry() const;

  /// The processes that registrations are bound to, ascending.
  std::vector<std::uint32_t> WatchedProcesses() const;

  /// Removes what was bound to this process.
  void DropProcess(std::uint32_t process_id);

  /// Removes everything that came from the registration file, also what is covered.
  void DropFileRegistrations();

  /// The first of a file's entries that may find no room in the place of what came from the registration
  /// file, reckoned as if each shared neither type nor values with anything stored; null: there is room for
  /// all.
  const FileRegistration* FindWithoutRoom(const std::vector<FileRegistration>& entries) const;

  /// The registration of `url` in `language`, none when there is none.
  std::optional<RegistrationView> Find(std::string_view url, std::string_view language) const;

  /// Removes what other hosts have registered.
  void DropHosts();

  /// The registrations of the URL in all languages.
  void ForEachOf(std::string_view url, const std::function<void(const RegistrationView&)>& visit) const;

  /// Whether anything is registered under the URL, in whatever language, by anyone but this other host.
  bool OthersHave(std::string_view url, std::string_view host) const;

  /// All registrations, in no particular order.
  void ForEach(const std::function<void(const RegistrationView&)>& visit) const;

  /// A URL that is registered in two languages counts twice.
  std::size_t size() const;

  /// Bytes of the heap that are reckoned for all registrations and the indexes over them.
  std::size_t bytes() const;

  /// What this other host has registered.
  HostUse UseOf(std::string_view host) const;

  /// How many registrations searches have looked at so far.
  std::uint64_t touched() const;

 private:
  struct Store;
  std::unique_ptr<Store> store_;
};

}  // namespace slp
