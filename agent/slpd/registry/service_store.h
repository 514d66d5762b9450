// The registered services and the indexes over them, always in step. Knows nothing of the protocol's rules:
// what goes in has been checked. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "slpd/registry/registration.h"
#include "slpd/registry/type_index.h"
#include "slpd/registry/value_index.h"
#include "slpd/seconds.h"
#include "text/attributes.h"
#include "text/keyed_hash.h"

namespace slp {

/// The address of another host and what it has registered.
using HostAccount = std::pair<const std::string, HostUse>;

/// What is stored of one URL in one language. Its place in the lists that it stands in is kept here, so that
/// it leaves each of them at once.
struct ServiceEntry {
  std::string text;  ///< the URL and behind it the attribute list
  std::uint32_t url_length = 0;
  ServiceGroup* group = nullptr;  ///< null: the place is free
  HostAccount* host = nullptr;    ///< null: it counts for none
  std::optional<Instant> expiry;
  std::uint32_t process_id = 0;
  std::uint16_t lifetime = 0;
  RegistrationSource source = RegistrationSource::kMessage;

  EntryId next_variant = kNoEntry;  ///< the same URL in another language
  ValueIndex::Chain values = ValueIndex::kNoChain;
  std::uint32_t place_in_group = 0;
  std::uint32_t place_in_expiry = 0;
  std::uint32_t place_in_process = 0;
  std::uint32_t bytes = 0;  ///< what it counts for in its host's use

  std::string_view url() const { return std::string_view(text).substr(0, url_length); }
  std::string_view attributes() const { return std::string_view(text).substr(url_length); }
  RegistrationView View() const;
};

class ServiceStore {
 public:
  ServiceStore();
  ServiceStore(const ServiceStore&) = delete;
  ServiceStore& operator=(const ServiceStore&) = delete;

  /// Nothing may be stored under the URL in this language. `type`, `scopes` and `attributes` are those of
  /// `registration`, in parts.
  EntryId Insert(const Registration& registration, const ServiceType& type,
                 const std::vector<std::string>& scopes, const AttributeList& attributes, Instant now);

  /// A new lifetime, process and source for the same texts.
  void Renew(EntryId id, const Registration& registration, Instant now);

  /// Other attributes for the same service, which lives on as it did.
  void ReplaceAttributes(EntryId id, const AttributeList& attributes);

  void Erase(EntryId id);

  /// The first variant of the URL, the others follow by next_variant; kNoEntry: the URL is not known.
  EntryId FindUrl(std::string_view url) const;
  EntryId FindVariant(std::string_view url, std::string_view language) const;

  const ServiceEntry& operator[](EntryId id) const { return entries_[id]; }
  std::size_t size() const { return size_; }

  /// Bytes of the heap that are reckoned for all there is.
  std::size_t bytes() const;

  /// Bytes that Erase would give back, or a little less; takes as long as the service has values.
  std::size_t BytesOf(EntryId id) const;

  /// Bytes that one service takes at most: as if nothing that is stored already were shared with it.
  /// `attributes` are the registration's, in parts.
  static std::size_t BytesOf(const Registration& registration, const AttributeList& attributes);

  const TypeIndex& types() const { return types_; }
  const ValueIndex& values() const { return values_; }

  /// By when they end.
  const std::map<Instant, std::vector<EntryId>>& by_expiry() const { return by_expiry_; }
  const std::map<std::uint32_t, std::vector<EntryId>>& by_process() const { return by_process_; }

  /// What this other host has registered.
  HostUse UseOf(std::string_view host) const;

  /// One past the largest id; ids whose group is null stand for nothing.
  EntryId end() const { return static_cast<EntryId>(entries_.size()); }

 private:
  /// Hash and equality of the entries' URLs, which are compared byte by byte (RFC 2608 section 6.4).
  struct UrlHash {
    using is_transparent = void;
    const std::deque<ServiceEntry>* entries;
    std::size_t operator()(std::string_view url) const { return TextHash{}(url); }
    std::size_t operator()(EntryId id) const { return (*this)((*entries)[id].url()); }
  };
  struct UrlEqual {
    using is_transparent = void;
    const std::deque<ServiceEntry>* entries;
    std::string_view Url(std::string_view url) const { return url; }
    std::string_view Url(EntryId id) const { return (*entries)[id].url(); }
    template <typename A, typename B>
    bool operator()(const A& a, const B& b) const {
      return Url(a) == Url(b);
    }
  };

  template <typename Key>
  using Lists = std::map<Key, std::vector<EntryId>>;

  void EnterLists(EntryId id);
  void LeaveLists(EntryId id);
  void RemoveAt(std::vector<EntryId>& list, std::uint32_t ServiceEntry::*place, EntryId id);
  static void SetBytes(ServiceEntry& entry, const AttributeList& attributes);
  void SetLife(EntryId id, const Registration& registration, Instant now);

  std::deque<ServiceEntry> entries_;
  std::vector<EntryId> free_;
  std::unordered_set<EntryId, UrlHash, UrlEqual> by_url_;  ///< first variants
  TypeIndex types_;
  ValueIndex values_;
  Lists<Instant> by_expiry_;
  Lists<std::uint32_t> by_process_;
  std::map<std::string, HostUse, std::less<>> hosts_;
  std::size_t size_ = 0;
  std::size_t text_bytes_ = 0;  ///< reckoned for the entries' texts
};

}  // namespace slp
