// The functions of slp.h: each does what its script says, else the provider's own behaviour.
#include <slp.h>

#include "support/scripted_slp/provider.h"

namespace {

using scripted_slp::Call;
using scripted_slp::Delivery;
using scripted_slp::Function;
using scripted_slp::LogText;
using scripted_slp::Reply;
using scripted_slp::WorkMark;

const char* TextOf(const Delivery& delivery) {
  return delivery.text ? delivery.text->c_str() : nullptr;
}

/// Calls `callback` for the deliveries of the script and, while it wants more, for the end of the search.
template <typename Callback>
SLPError Search(const Call& call, const Callback& callback) {
  if (call.HandleError() != SLP_OK) {
    return call.HandleError();
  }
  const Reply reply = call.Script().value_or(Reply());
  bool wants_more = true;
  for (const Delivery& delivery : reply.deliveries) {
    wants_more = wants_more && callback(delivery) == SLP_TRUE;
  }
  if (wants_more && reply.result == SLP_OK) {
    callback(scripted_slp::Code(SLP_LAST_CALL));
  }
  return reply.result;
}

/// Calls a callback and notes what it answers.
template <typename Callback, typename... Arguments>
SLPBoolean Ask(Callback callback, Arguments... arguments) {
  SLPBoolean answer = SLP_FALSE;
  {
    const WorkMark caller(false);
    answer = callback(arguments...);
  }
  scripted_slp::LogAnswer(answer);
  return answer;
}

/// Reports what the script delivers, else success.
SLPError Report(const Call& call, SLPHandle handle, SLPRegReport callback, void* cookie) {
  if (call.HandleError() != SLP_OK) {
    return call.HandleError();
  }
  const Reply reply = call.Script().value_or(scripted_slp::Delivers({scripted_slp::Code(SLP_OK)}));
  for (const Delivery& delivery : reply.deliveries) {
    const WorkMark caller(false);
    callback(handle, delivery.code, cookie);
  }
  return reply.result;
}

/// Hands out what the script says, else `own`; none of that is SLP_PARSE_ERROR.
SLPError HandOut(const Call& call, const std::optional<std::string>& own, char** out) {
  if (call.Script().has_value()) {
    if (call.Script()->text.has_value()) {
      *out = scripted_slp::HandOutText(*call.Script()->text);
    }
    return call.Script()->result;
  }
  if (!own.has_value()) {
    return SLP_PARSE_ERROR;
  }
  *out = scripted_slp::HandOutText(*own);
  return SLP_OK;
}

}  // namespace

extern "C" {

SLPError SLPEXP_CALL SLPOpen(const char* pcLang, SLPBoolean isAsync, SLPHandle* phSLP) {
  const WorkMark own(true);
  Call call(Function::kOpen, "SLPOpen", {LogText(pcLang), std::to_string(isAsync)});
  if (call.Script().has_value()) {
    return call.Script()->result;
  }
  *phSLP = scripted_slp::OpenHandle();
  call.LogResult(scripted_slp::HandleName(*phSLP));
  return SLP_OK;
}

void SLPEXP_CALL SLPClose(SLPHandle hSLP) {
  const WorkMark own(true);
  const Call call(Function::kClose, "SLPClose", hSLP, {});
  if (call.HandleError() == SLP_OK) {
    scripted_slp::CloseHandle(hSLP);
  }
}

SLPError SLPEXP_CALL SLPAssociateIP(SLPHandle hSLP, const char* ip) {
  const WorkMark own(true);
  const Call call(Function::kAssociateIP, "SLPAssociateIP", hSLP, {LogText(ip)});
  return call.Script().has_value() ? call.Script()->result : call.HandleError();
}

SLPError SLPEXP_CALL SLPAssociateIFList(SLPHandle hSLP, const char* list) {
  const WorkMark own(true);
  const Call call(Function::kAssociateIFList, "SLPAssociateIFList", hSLP, {LogText(list)});
  return call.Script().has_value() ? call.Script()->result : call.HandleError();
}

SLPError SLPEXP_CALL SLPReg(SLPHandle hSLP, const char* pcSrvURL, unsigned short usLifetime,
                            const char* pcSrvType, const char* pcAttrs, SLPBoolean fresh,
                            SLPRegReport callback, void* pvCookie) {
  const WorkMark own(true);
  const Call call(Function::kReg, "SLPReg", hSLP,
                  {LogText(pcSrvURL), std::to_string(usLifetime), LogText(pcSrvType), LogText(pcAttrs),
                   std::to_string(fresh)});
  return Report(call, hSLP, callback, pvCookie);
}

SLPError SLPEXP_CALL SLPDereg(SLPHandle hSLP, const char* pcSrvURL, SLPRegReport callback, void* pvCookie) {
  const WorkMark own(true);
  const Call call(Function::kDereg, "SLPDereg", hSLP, {LogText(pcSrvURL)});
  return Report(call, hSLP, callback, pvCookie);
}

SLPError SLPEXP_CALL SLPDelAttrs(SLPHandle hSLP, const char* pcSrvURL, const char* pcAttrs,
                                 SLPRegReport callback, void* pvCookie) {
  const WorkMark own(true);
  const Call call(Function::kDelAttrs, "SLPDelAttrs", hSLP, {LogText(pcSrvURL), LogText(pcAttrs)});
  return Report(call, hSLP, callback, pvCookie);
}

SLPError SLPEXP_CALL SLPFindSrvTypes(SLPHandle hSLP, const char* pcNamingAuthority, const char* pcScopeList,
                                     SLPSrvTypeCallback callback, void* pvCookie) {
  const WorkMark own(true);
  const Call call(Function::kFindSrvTypes, "SLPFindSrvTypes", hSLP,
                  {LogText(pcNamingAuthority), LogText(pcScopeList)});
  return Search(call, [&](const Delivery& delivery) {
    return Ask(callback, hSLP, TextOf(delivery), delivery.code, pvCookie);
  });
}

SLPError SLPEXP_CALL SLPFindSrvs(SLPHandle hSLP, const char* pcServiceType, const char* pcScopeList,
                                 const char* pcSearchFilter, SLPSrvURLCallback callback, void* pvCookie) {
  const WorkMark own(true);
  const Call call(Function::kFindSrvs, "SLPFindSrvs", hSLP,
                  {LogText(pcServiceType), LogText(pcScopeList), LogText(pcSearchFilter)});
  return Search(call, [&](const Delivery& delivery) {
    return Ask(callback, hSLP, TextOf(delivery), delivery.lifetime, delivery.code, pvCookie);
  });
}

SLPError SLPEXP_CALL SLPFindAttrs(SLPHandle hSLP, const char* pcURLOrServiceType, const char* pcScopeList,
                                  const char* pcAttrIds, SLPAttrCallback callback, void* pvCookie) {
  const WorkMark own(true);
  const Call call(Function::kFindAttrs, "SLPFindAttrs", hSLP,
                  {LogText(pcURLOrServiceType), LogText(pcScopeList), LogText(pcAttrIds)});
  return Search(call, [&](const Delivery& delivery) {
    return Ask(callback, hSLP, TextOf(delivery), delivery.code, pvCookie);
  });
}

SLPError SLPEXP_CALL SLPFindScopes(SLPHandle hSLP, char** ppcScopeList) {
  const WorkMark own(true);
  const Call call(Function::kFindScopes, "SLPFindScopes", hSLP, {});
  return HandOut(call, scripted_slp::Property("net.slp.useScopes"), ppcScopeList);
}

unsigned short SLPEXP_CALL SLPGetRefreshInterval(void) {
  const WorkMark own(true);
  const Call call(Function::kGetRefreshInterval, "SLPGetRefreshInterval", {});
  return 0;
}

SLPError SLPEXP_CALL SLPParseSrvURL(const char* pcSrvURL, SLPSrvURL** ppSrvURL) {
  const WorkMark own(true);
  const Call call(Function::kParseSrvURL, "SLPParseSrvURL", {LogText(pcSrvURL)});
  if (call.Script().has_value()) {
    if (call.Script()->url.has_value()) {
      *ppSrvURL = scripted_slp::HandOutURL(*call.Script()->url);
    }
    return call.Script()->result;
  }
  const std::optional<scripted_slp::ParsedURL> parsed = scripted_slp::ParseURL(pcSrvURL);
  if (!parsed.has_value()) {
    return SLP_PARSE_ERROR;
  }
  *ppSrvURL = scripted_slp::HandOutURL(*parsed);
  return SLP_OK;
}

SLPError SLPEXP_CALL SLPParseAttrs(const char* pcAttrList, const char* pcAttrId, char** ppcAttrVal) {
  const WorkMark own(true);
  const Call call(Function::kParseAttrs, "SLPParseAttrs", {LogText(pcAttrList), LogText(pcAttrId)});
  return HandOut(call, scripted_slp::AttributeValue(pcAttrList, pcAttrId), ppcAttrVal);
}

SLPError SLPEXP_CALL SLPEscape(const char* pcInbuf, char** ppcOutBuf, SLPBoolean isTag) {
  const WorkMark own(true);
  const Call call(Function::kEscape, "SLPEscape", {LogText(pcInbuf), std::to_string(isTag)});
  return HandOut(call, scripted_slp::Escape(pcInbuf, isTag == SLP_TRUE), ppcOutBuf);
}

SLPError SLPEXP_CALL SLPUnescape(const char* pcInbuf, char** ppcOutBuf, SLPBoolean isTag) {
  const WorkMark own(true);
  const Call call(Function::kUnescape, "SLPUnescape", {LogText(pcInbuf), std::to_string(isTag)});
  return HandOut(call, scripted_slp::Unescape(pcInbuf), ppcOutBuf);
}

void SLPEXP_CALL SLPFree(void* pvMem) {
  const WorkMark own(true);
  if (pvMem != nullptr) {
    scripted_slp::TakeBack(pvMem);
  }
}

const char* SLPEXP_CALL SLPGetProperty(const char* pcName) {
  const WorkMark own(true);
  const Call call(Function::kGetProperty, "SLPGetProperty", {LogText(pcName)});
  return scripted_slp::Keep(call.Script().has_value() ? call.Script()->text : scripted_slp::Property(pcName));
}

void SLPEXP_CALL SLPSetProperty(const char* pcName, const char* pcValue) {
  const WorkMark own(true);
  const Call call(Function::kSetProperty, "SLPSetProperty", {LogText(pcName), LogText(pcValue)});
  if (!call.Script().has_value()) {
    scripted_slp::SetProcessProperty(pcName, pcValue == nullptr ? "" : pcValue);
  }
}

SLPError SLPEXP_CALL SLPSetAppPropertyFile(const char* pcPathname) {
  const WorkMark own(true);
  const Call call(Function::kSetAppPropertyFile, "SLPSetAppPropertyFile", {LogText(pcPathname)});
  return call.Script().has_value() ? call.Script()->result : SLP_OK;
}

}  // extern "C"
