#include "bench/end_to_end/memory.h"

#include "bench/end_to_end/operations.h"
#include "bench/end_to_end/slp_session.h"
#include "bench/support/table.h"

namespace bench {

std::map<std::size_t, double> MeasureMemory(const std::vector<std::size_t>& sizes,
                                            const BenchDaemon& daemon) {
  const std::size_t empty = daemon.Usage().resident_bytes;
  std::vector<Row> rows = {{"registrations", "resident MB", "bytes each", "bytes each beyond the row above"}};
  std::map<std::size_t, double> bytes_each;
  std::size_t registered = 0;
  std::size_t before = empty;
  for (const std::size_t size : sizes) {
    Fill(OpenSlpSession, registered, size);
    const std::size_t resident = daemon.Usage().resident_bytes;
    bytes_each[size] = static_cast<double>(resident - empty) / static_cast<double>(size);
    rows.push_back({std::to_string(size), Number(static_cast<double>(resident) / 1e6),
                    Number(bytes_each[size]),
                    Number(static_cast<double>(resident - before) / static_cast<double>(size - registered))});
    registered = size;
    before = resident;
  }
  Empty(OpenSlpSession, registered);
  PrintTable(rows);
  return bytes_each;
}

}  // namespace bench
