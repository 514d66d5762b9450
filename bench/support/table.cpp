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

}  // namespace

void PrintTable(const std::vector<Row>& rows) {
  std::cout << "\n";
  PrintRow(rows.front());
  PrintRow(Row(rows.front().size(), "---"));
  std::for_each(rows.begin() + 1, rows.end(), PrintRow);
  std::cout << std::endl;
}

std::string Number(double value) {
  const double magnitude = value == 0 ? 0 : std::floor(std::log10(std::abs(value)));
  const int decimals = std::max(0, 2 - static_cast<int>(magnitude));
  std::ostringstream text;
  text << std::fixed << std::setprecision(decimals) << value;
  return text.str();
}

void PrintTarget(const std::string& what, double figure, double largest, const std::string& unit) {
  std::cout << "- " << (figure <= largest ? "met" : "MISSED") << ": " << what << ": " << Number(figure)
            << unit << " (at most " << Number(largest) << unit << ")" << std::endl;
}

}  // namespace bench
