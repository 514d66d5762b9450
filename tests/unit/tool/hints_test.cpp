#include "hints.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <vector>

#include "result_view.h"

namespace kelsd_tool {
namespace {

using kelsd::SResult;

TEST(Hints, AdviseWhereSomethingCanBeDone) {
  // What remains cannot be changed by who uses the tool.
  const std::vector<SResult::EError> without = {
      SResult::ERR_SUCCESS,
      SResult::ERR_HANDLE_IN_USE,
      SResult::ERR_NOT_IMPLEMENTED,
      SResult::ERR_LANGUAGE_NOT_SUPPORTED,
      SResult::ERR_ASYNC_NOT_SUPPORTED,
      static_cast<SResult::EError>(44),
  };
  std::vector<SResult::EError> none;
  for (int code = 0; code <= 47; ++code) {
    if (HintFor(static_cast<SResult::EError>(code)).empty()) {
      none.push_back(static_cast<SResult::EError>(code));
    }
  }
  EXPECT_EQ(none, without);
}

TEST(Hints, OfTheConfigurationFileTellWhatRightsItTakes) {
  EXPECT_EQ(
      HintFor(SResult::ERR_CONF_OPEN),
      "Another program may be writing the file: try again. Else check that this user may read and write "
      "it.");
  EXPECT_EQ(HintFor(SResult::ERR_RESTART_REQUIRED),
            "SLP could not read the file that OpenSLPConfig names: check that this user may. An application "
            "that changed the variable after SLP had read it must be started again.");
}

TEST(Hints, StandWithTheResultForPrograms) {
  EXPECT_EQ(
      ToJson(SResult(SResult::ERR_CONF_WRITE, "file", "a b")),
      (nlohmann::json{{"code", 39},
                      {"message", SResult::GetErrorDescription(SResult::ERR_CONF_WRITE)},
                      {"detail", "file"},
                      {"debug", "a b"},
                      {"hint", "Check that this user may write the file, and that the disk is not full."}}));
  EXPECT_EQ(ToJson(std::vector<SResult>()), nlohmann::json::array());
}

}  // namespace
}  // namespace kelsd_tool
