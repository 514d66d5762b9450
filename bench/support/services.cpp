#include "bench/support/services.h"

namespace bench {
namespace {

// As many digits each, so that no value is the beginning of another.
std::string Digits(std::size_t index) {
  const std::string text = std::to_string(index);
  return std::string(text.size() < 8 ? 8 - text.size() : 0, '0') + text;
}

// The comma is the only character of these values that is reserved.
std::string Escaped(std::string value) {
  for (auto comma = value.find(','); comma != std::string::npos; comma = value.find(',', comma)) {
    value.replace(comma, 1, "\\2C");
  }
  return value;
}

}  // namespace

std::string Url(std::size_t index) {
  return std::string(kType) + "://127.0.0.1:8080/services/" + Digits(index);
}

std::map<std::string, std::string> AttributeValues(std::size_t index) {
  return {{"id", Digits(index)},
          {"x-version", "4.2"},
          {"x-server-name", "srv" + Digits(index)},
          {"x-ip-addresses", "10.0.0.1,10.0.0.2"},
          {"x-server-ns-name", "ns1"},
          {"x-server-ns-port", "8081"}};
}

std::string Attributes(std::size_t index) {
  std::string list;
  for (const auto& [tag, value] : AttributeValues(index)) {
    list += (list.empty() ? "(" : ",(") + tag + "=" + Escaped(value) + ")";
  }
  return list;
}

std::string OnlyThis(std::size_t index) {
  return "(id=" + Digits(index) + ")";
}

std::string OnlyThisByEnd(std::size_t index) {
  return "(x-server-name=*" + Digits(index) + ")";
}

std::string OnlyThisByBeginning(std::size_t index) {
  return "(x-server-name=srv" + Digits(index) + "*)";
}

}  // namespace bench
