// Whether a test runs under Wine, which stands in for Windows but lacks a few of its ways. Any thread.
#pragma once

namespace kelsd::support {

bool UnderWine();

}  // namespace kelsd::support
