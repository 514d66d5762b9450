// Error codes of the protocol and the small result type that the whole agent uses. Values; any thread.
#pragma once

#include <cstdint>
#include <utility>
#include <variant>

namespace slp {

/// Error codes as they travel in replies (RFC 2608 section 7).
enum class Error : std::uint16_t {
  kOk = 0,
  kLanguageNotSupported = 1,
  kParseError = 2,
  kInvalidRegistration = 3,
  kScopeNotSupported = 4,
  kAuthenticationUnknown = 5,
  kAuthenticationAbsent = 6,
  kAuthenticationFailed = 7,
  kVersionNotSupported = 9,
  kInternalError = 10,
  kDaBusyNow = 11,
  kOptionNotUnderstood = 12,
  kInvalidUpdate = 13,
  kMessageNotSupported = 14,
  kRefreshRejected = 15,
};

/// Either a value or the error that kept it from being made; never Error::kOk as an error.
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : content_(std::move(value)) {}
  Result(Error error) : content_(error) {}

  bool ok() const { return std::holds_alternative<T>(content_); }
  explicit operator bool() const { return ok(); }

  /// Error::kOk when there is a value.
  Error error() const { return ok() ? Error::kOk : std::get<Error>(content_); }

  /// Only to be asked for when ok().
  T& value() & { return std::get<T>(content_); }
  const T& value() const& { return std::get<T>(content_); }
  T&& value() && { return std::get<T>(std::move(content_)); }
  T& operator*() & { return value(); }
  const T& operator*() const& { return value(); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }

 private:
  std::variant<T, Error> content_;
};

}  // namespace slp
