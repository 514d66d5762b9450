#include "slp/error_map.h"

#include <gtest/gtest.h>

#include <array>

namespace kelsd {
namespace {

constexpr std::array<SLPErrorMapping, 2> kMappings{{
    {SLP_PARSE_ERROR, SResult::ERR_URL_INVALID},
    {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
}};

TEST(MapSLPError, KnowsSuccessWithoutARow) {
  EXPECT_EQ(MapSLPError(SLP_OK, kMappings), SResult::ERR_SUCCESS);
  EXPECT_EQ(MapSLPError(SLP_OK, {}), SResult::ERR_SUCCESS);
}

TEST(MapSLPError, TakesTheRowOfTheCode) {
  EXPECT_EQ(MapSLPError(SLP_PARSE_ERROR, kMappings), SResult::ERR_URL_INVALID);
  EXPECT_EQ(MapSLPError(SLP_PARAMETER_BAD, kMappings), SResult::ERR_INVALID_PARAMETER);
}

TEST(MapSLPError, MapsEverythingElseToUnknown) {
  for (const SLPError code : {SLP_LAST_CALL, SLP_NETWORK_ERROR, SLPError(-30)}) {
    EXPECT_EQ(MapSLPError(code, kMappings), SResult::ERR_UNKNOWN);
  }
}

}  // namespace
}  // namespace kelsd
