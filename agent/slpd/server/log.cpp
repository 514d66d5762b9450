#include "slpd/server/log.h"

#include <ctime>

#include "slpd/server/log_file.h"

namespace slp {
namespace {

struct KindRow {
  std::string_view name;
  std::size_t lines_a_minute;
};

// In the order of LogKind. State lines come from the administrator's own deeds and a few per connection at
// most.
constexpr std::array<KindRow, 6> kKinds{{
    {"state", 600},
    {"problem", 120},
    {"registration", 6000},
    {"message", 6000},
    {"drop", 600},
    {"refusal", 1},
}};

constexpr std::chrono::minutes kPeriod{1};

std::string Escaped(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string result;
  result.reserve(text.size());
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F) {
      result += "\\x";
      result += kDigits[byte >> 4U];
      result += kDigits[byte & 0xFU];
    } else {
      result += character;
    }
  }
  return result;
}

std::string LocalTime(std::chrono::system_clock::time_point time) {
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count() % 1000;
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  std::array<char, 32> text{};
  const std::tm* parts = std::localtime(&seconds);
  if (parts == nullptr || std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", parts) == 0) {
    return std::to_string(seconds);
  }
  const std::string fraction = std::to_string(1000 + milliseconds);
  return std::string(text.data()) + "." + fraction.substr(1);
}

}  // namespace

Log::Log(std::ostream& stream, Clock clock) : stream_(&stream), clock_(std::move(clock)) {}

bool Log::Open(const std::string& path, bool append, std::string& problem) {
  auto file = OpenLogFile(path, append, problem);
  if (file == nullptr) {
    return false;
  }
  file_ = std::move(file);
  stream_ = file_.get();
  return true;
}

void Log::TellProblems(std::function<void(std::string_view text)> tell) {
  tell_problem_ = std::move(tell);
}

void Log::Write(LogKind kind, std::string_view text) {
  const auto index = static_cast<std::size_t>(kind);
  Allowance& allowance = allowances_[index];
  const auto now = clock_();
  if (now - allowance.since >= kPeriod || now < allowance.since) {
    if (allowance.left_out > 0) {
      WriteLine(now, kind, std::to_string(allowance.left_out) + " more lines of this kind were left out");
    }
    allowance = {now, 0, 0};
  }
  if (allowance.written >= kKinds[index].lines_a_minute) {
    ++allowance.left_out;
    return;
  }
  ++allowance.written;
  WriteLine(now, kind, text);
  if (kind == LogKind::kProblem && tell_problem_) {
    tell_problem_(text);
  }
}

void Log::WriteLine(std::chrono::system_clock::time_point time, LogKind kind, std::string_view text) {
  *stream_ << LocalTime(time) << ' ' << kKinds[static_cast<std::size_t>(kind)].name << ' ' << Escaped(text)
           << std::endl;
  // A full disk must not silence the log for good.
  stream_->clear();
}

}  // namespace slp
