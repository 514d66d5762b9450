#include "bench/support/table.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace bench {
namespace {

void PrintRow(const Row& row) {
  std::cout << "|";
  for (const std::string& cell : row) {
    std::cout << " " << cell << " |";
  }
  std::cout << "\n";
}

void PrintTarget(bool met, const std::string& what, double figure, const std::string& limit,
                 const std::string& unit) {
  std::cout << "- " << (met ? "met" : "MISSED") << ": " << what << ": " << Number(figure) << unit << " ("
            << limit << unit << ")" << std::endl;
}

}  // namespace

void PrintTable(const std::vector<Row>& rows) {
  std::cout << "\n";
  PrintRow(rows.front());
  PrintRow(Row(rows.front().size(), "---"));
  std::for_each(rows.begin() + 1, rows.end(), PrintRow);
  std::cout << std::endl;
}

std::string Number(double value) {
  if (value == 0) {
    return "0";
  }
  const double magnitude = std::floor(std::log10(std::abs(value)));
  const int decimals = std::max(0, 2 - static_cast<int>(magnitude));
  std::ostringstream text;
  text << std::fixed << std::setprecision(decimals) << value;
  return text.str();
}

void PrintAtMost(const std::string& what, double figure, double largest, const std::string& unit) {
  PrintTarget(figure <= largest, what, figure, "at most " + Number(largest), unit);
}

void PrintAtLeast(const std::string& what, double figure, double smallest, const std::string& unit) {
  PrintTarget(figure >= smallest, what, figure, "at least " + Number(smallest), unit);
}

}  // namespace bench
