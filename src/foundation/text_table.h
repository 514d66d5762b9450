// A fixed table between the values of an enumeration and their texts, for lookups in both directions.
//
// Tables are built while the library is loaded, before other threads can call it, only read afterwards and
// never destroyed: calls that come while the process ends still find them. A table lives in a function, so
// that it is also there for what is initialised earlier than its own file:
//
//   const TextTable<EColour>& Colours() {
//     static const auto& table = *new TextTable<EColour>({{EColour::kNone, ""}, {EColour::kRed, "red"}});
//     return table;
//   }
//   [[maybe_unused]] const auto& built_at_load = Colours();
#pragma once

#include <map>
#include <string>
#include <utility>

namespace kelsd {

template <typename Enum>
class TextTable {
 public:
  /// `texts` has a row for every value, the value 0 included, and no text twice.
  explicit TextTable(std::map<Enum, std::string> texts) : texts_(std::move(texts)) {
    for (const auto& [value, text] : texts_) {
      values_.emplace(text, value);
    }
  }

  /// The text of `value`; a number that is no value of the table has the text of the value 0.
  const std::string& ToText(Enum value) const {
    const auto row = texts_.find(value);
    return row == texts_.end() ? texts_.at(Enum{}) : row->second;
  }

  /// The value with exactly the text `text`. Without one the result is the value 0, and `*unknown` becomes
  /// true if `unknown` isn't null; the flag is never set to false.
  Enum FromText(const std::string& text, bool* unknown) const {
    const auto row = values_.find(text);
    if (row != values_.end()) {
      return row->second;
    }
    if (unknown != nullptr) {
      *unknown = true;
    }
    return Enum{};
  }

 private:
  std::map<Enum, std::string> texts_;
  std::map<std::string, Enum> values_;
};

}  // namespace kelsd
