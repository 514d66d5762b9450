// A global locale that writes and reads numbers differently from the classic one: "8.080" and "0,5".
#pragma once

#include <locale>
#include <string>

namespace kelsd::test {

/// In force while the object lives.
class GroupingLocale {
 public:
  GroupingLocale() : former_(std::locale::global(std::locale(std::locale::classic(), new Punctuation))) {}
  ~GroupingLocale() { std::locale::global(former_); }
  GroupingLocale(const GroupingLocale&) = delete;
  GroupingLocale& operator=(const GroupingLocale&) = delete;

 private:
  class Punctuation : public std::numpunct<char> {
   protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale former_;
};

}  // namespace kelsd::test
