// Reading the attributes of one service. Any thread may call it.
#include <slp.h>

#include <utility>

#include "client/client_impl.h"
#include "client/search.h"

namespace kelsd {

namespace {

struct AttributeReply {
  SearchOutcome outcome;
  std::string attributes;
};

/// Keeps the list of the agent that answers first and asks for no more.
extern "C" SLPBoolean SLPCALLBACK KeepAttributes(SLPHandle, const char* attributes, SLPError code,
                                                 void* cookie) {
  auto& reply = *static_cast<AttributeReply*>(cookie);
  return HandleReply(reply.outcome, code, [&] {
    reply.attributes = attributes == nullptr ? "" : attributes;
    return SLP_FALSE;
  });
}

std::vector<std::string> TagTexts(const std::vector<IKelServiceType::EAttr>& tags) {
  std::vector<std::string> texts;
  for (const IKelServiceType::EAttr tag : tags) {
    if (tag != IKelServiceType::ATTR_NONE) {
      texts.push_back(IKelServiceType::ToString(tag));
    }
  }
  return texts;
}

/// The values of those of `tags` that are known and stand in `attributes`.
std::map<IKelServiceType::EAttr, std::string> KnownAttributes(const std::vector<std::string>& tags,
                                                              const std::string& attributes) {
  std::map<IKelServiceType::EAttr, std::string> values;
  for (const std::string& tag : tags) {
    std::string value;
    if (CKelSLPImpl::ParseAttribute(value, tag, attributes).IsNotOk()) {
      continue;
    }
    bool unknown = false;
    const IKelServiceType::EAttr attribute = IKelServiceType::StringToEAttr(tag, &unknown);
    if (!unknown && attribute != IKelServiceType::ATTR_NONE) {
      values[attribute] = std::move(value);
    }
  }
  return values;
}

}  // namespace

// 1. Scopes and tags are cleaned and written as lists.
// 2. A handle is opened, closed again on every way out, and bound to the address if there is one.
// 3. The search keeps the list of the first reply; an error of the call goes before one of a reply.
// 4. The values of the wanted tags are taken from the list; a tag that is unknown, missing or malformed is
// left out.
SResult CKelSLPClientImpl::FindAttributes(SKelServiceAttributeSearchResult& result,
                                          const std::string& serviceURL, const std::vector<std::string>& tags,
                                          const std::vector<std::string>& scopes,
                                          const std::string& address) {
  return RunSearch("kelsd::CKelSLPClientImpl::FindAttributes", [&]() -> SResult {
    std::string scope_list;
    SResult scopes_listed = MakeSearchScopes(scope_list, scopes);
    if (scopes_listed.IsNotOk()) {
      return scopes_listed;
    }
    std::string tag_list;
    SResult tags_listed = CKelSLPImpl::CreateAttributeTagsList(tag_list, tags);
    if (tags_listed.IsNotOk()) {
      return tags_listed;
    }
    SLPHandleBox box;
    SResult opened = OpenSearchHandle(box, address);
    if (opened.IsNotOk()) {
      return opened;
    }
    AttributeReply reply;
    const SLPError answer = SLPFindAttrs(box.handle, serviceURL.c_str(), scope_list.c_str(), tag_list.c_str(),
                                         &KeepAttributes, &reply);
    SResult found = SearchResult("SLPFindAttrs", answer, reply.outcome);
    if (found.IsNotOk()) {
      return found;
    }
    std::map<IKelServiceType::EAttr, std::string> values = KnownAttributes(tags, reply.attributes);
    result.AttributeString = std::move(reply.attributes);
    result.Attributes = std::move(values);
    return {SResult::ERR_SUCCESS};
  });
}

SResult CKelSLPClientImpl::FindAttributes(SKelServiceAttributeSearchResult& result,
                                          const std::string& serviceURL,
                                          const std::vector<IKelServiceType::EAttr>& tags,
                                          const std::vector<std::string>& scopes,
                                          const std::string& address) {
  const auto search = [&] { return FindAttributes(result, serviceURL, TagTexts(tags), scopes, address); };
  return CKelSLPImpl::InvokeNoThrow(std::cref(search));
}

SResult CKelSLPClientImpl::FindAttributes(SKelServiceAttributeSearchResult& result,
                                          const IKelServiceType& type, const std::string& address) {
  const auto search = [&] {
    return FindAttributes(result, type.GetServiceURL(), type.GetAttributeTags(), type.GetScopes(), address);
  };
  return CKelSLPImpl::InvokeNoThrow(std::cref(search));
}

}  // namespace kelsd
