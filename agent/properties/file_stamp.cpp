#include "properties/file_stamp.h"

namespace slp {

bool IsUnchanged(const std::optional<FileStamp>& earlier, const std::optional<FileStamp>& now) {
  return earlier && now && earlier->rested && earlier->marks == now->marks;
}

}  // namespace slp
