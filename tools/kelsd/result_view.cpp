#include "result_view.h"

#include "hints.h"

namespace kelsd_tool {

using kelsd::SResult;

nlohmann::json ToJson(const SResult& result) {
  return {{"code", static_cast<int>(result.GetErrorCode())},
          {"message", result.GetErrorDescription()},
          {"detail", result.GetErrorDetail()},
          {"debug", result.GetErrorDebug()},
          {"hint", HintFor(result.GetErrorCode())}};
}

nlohmann::json ToJson(const std::vector<SResult>& results) {
  nlohmann::json list = nlohmann::json::array();
  for (const SResult& result : results) {
    list.push_back(ToJson(result));
  }
  return list;
}

}  // namespace kelsd_tool
