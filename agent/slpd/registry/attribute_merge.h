// The attributes of many services as one list: each tag once, each value once (RFC 2608 section 10.4). A
// value; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "text/attributes.h"
#include "text/keyed_hash.h"

namespace slp {

class AttributeMerge {
 public:
  /// Never makes a text longer than `limit` bytes.
  explicit AttributeMerge(std::size_t limit) : limit_(limit) {}

  /// Tags and values that are new, in the case and with the white space that they have here. A tag that is a
  /// keyword in one list and has values in another has values.
  void Add(const AttributeList& attributes);

  /// Whether something was left out because of the limit; nothing is taken any more then.
  bool full() const { return full_; }

  std::string ToString() const;

 private:
  struct Merged {
    std::string tag;
    std::vector<std::string> raw_values;
    std::unordered_set<std::string, TextHash> normal_forms;
  };

  Merged* FindOrAdd(const Attribute& attribute);
  void AddValue(Merged& merged, const AttributeValue& value);
  bool Take(std::size_t bytes);

  std::vector<Merged> merged_;
  std::unordered_map<std::string, std::size_t, TextHash> places_;  ///< by folded tag
  std::size_t limit_;
  std::size_t size_ = 0;
  bool full_ = false;
};

}  // namespace slp
