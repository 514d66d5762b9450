// Tables and lines in the form that docs/performance.md has. One thread.
#pragma once

#include <string>
#include <vector>

namespace bench {

using Row = std::vector<std::string>;

/// Writes a table to the standard output; the first row is the heading.
void PrintTable(const std::vector<Row>& rows);

/// A number with three significant digits at least, without an exponent.
std::string Number(double value);

// Write whether a target was met: what it is, the figure and the limit that it has to keep.

void PrintAtMost(const std::string& what, double figure, double largest, const std::string& unit);
void PrintAtLeast(const std::string& what, double figure, double smallest, const std::string& unit);

}  // namespace bench
