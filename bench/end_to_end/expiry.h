// How exactly registrations end. One thread calls it.
#pragma once

namespace bench {

/// Registers services for two and three seconds, at different fractions of a second, and searches for each
/// until it is gone. Writes as targets that none went early and how late the last one went.
void MeasureExpiry();

}  // namespace bench
