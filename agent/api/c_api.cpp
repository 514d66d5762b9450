// The exported functions; what they promise stands in slp.h, what they do in the calls beside.
#include "api/c_memory.h"
#include "api/handle_calls.h"
#include "api/property_calls.h"
#include "api/refresh_interval.h"
#include "api/registration_calls.h"
#include "api/search_calls.h"
#include "api/text_calls.h"
#include "slp.h"

SLPError SLPEXP_CALL SLPOpen(const char* pcLang, SLPBoolean isAsync, SLPHandle* phSLP) {
  return slp::client::OpenCall(pcLang, isAsync != SLP_FALSE, phSLP);
}

void SLPEXP_CALL SLPClose(SLPHandle hSLP) {
  slp::client::CloseCall(hSLP);
}

SLPError SLPEXP_CALL SLPAssociateIP(SLPHandle hSLP, const char* ip) {
  return slp::client::AssociatePeerCall(hSLP, ip);
}

SLPError SLPEXP_CALL SLPAssociateIFList(SLPHandle hSLP, const char* list) {
  return slp::client::AssociateInterfacesCall(hSLP, list);
}

SLPError SLPEXP_CALL SLPReg(SLPHandle hSLP, const char* pcSrvURL, unsigned short usLifetime,
                            const char* pcSrvType, const char* pcAttrs, SLPBoolean fresh,
                            SLPRegReport callback, void* pvCookie) {
  return slp::client::RegisterCall(hSLP, {pcSrvURL, usLifetime, pcSrvType, pcAttrs, fresh != SLP_FALSE},
                                   {callback, pvCookie});
}

SLPError SLPEXP_CALL SLPDereg(SLPHandle hSLP, const char* pcSrvURL, SLPRegReport callback, void* pvCookie) {
  return slp::client::DeregisterCall(hSLP, pcSrvURL, {callback, pvCookie});
}

SLPError SLPEXP_CALL SLPDelAttrs(SLPHandle hSLP, const char* pcSrvURL, const char* pcAttrs,
                                 SLPRegReport callback, void* pvCookie) {
  return slp::client::DeleteAttributesCall(hSLP, pcSrvURL, pcAttrs, {callback, pvCookie});
}

SLPError SLPEXP_CALL SLPFindSrvTypes(SLPHandle hSLP, const char* pcNamingAuthority, const char* pcScopeList,
                                     SLPSrvTypeCallback callback, void* pvCookie) {
  return slp::client::FindServiceTypesCall(hSLP, pcNamingAuthority, pcScopeList, {callback, pvCookie});
}

SLPError SLPEXP_CALL SLPFindSrvs(SLPHandle hSLP, const char* pcServiceType, const char* pcScopeList,
                                 const char* pcSearchFilter, SLPSrvURLCallback callback, void* pvCookie) {
  return slp::client::FindServicesCall(hSLP, pcServiceType, pcScopeList, pcSearchFilter,
                                       {callback, pvCookie});
}

SLPError SLPEXP_CALL SLPFindAttrs(SLPHandle hSLP, const char* pcURLOrServiceType, const char* pcScopeList,
                                  const char* pcAttrIds, SLPAttrCallback callback, void* pvCookie) {
  return slp::client::FindAttributesCall(hSLP, pcURLOrServiceType, pcScopeList, pcAttrIds,
                                         {callback, pvCookie});
}

SLPError SLPEXP_CALL SLPFindScopes(SLPHandle hSLP, char** ppcScopeList) {
  return slp::client::FindScopesCall(hSLP, ppcScopeList);
}

unsigned short SLPEXP_CALL SLPGetRefreshInterval(void) {
  return slp::client::RefreshIntervalCall();
}

SLPError SLPEXP_CALL SLPParseSrvURL(const char* pcSrvURL, SLPSrvURL** ppSrvURL) {
  return slp::client::ParseUrlCall(pcSrvURL, ppSrvURL);
}

SLPError SLPEXP_CALL SLPParseAttrs(const char* pcAttrList, const char* pcAttrId, char** ppcAttrVal) {
  return slp::client::ParseAttributeCall(pcAttrList, pcAttrId, ppcAttrVal);
}

SLPError SLPEXP_CALL SLPEscape(const char* pcInbuf, char** ppcOutBuf, SLPBoolean isTag) {
  return slp::client::EscapeCall(pcInbuf, ppcOutBuf, isTag != SLP_FALSE);
}

SLPError SLPEXP_CALL SLPUnescape(const char* pcInbuf, char** ppcOutBuf, SLPBoolean isTag) {
  return slp::client::UnescapeCall(pcInbuf, ppcOutBuf, isTag != SLP_FALSE);
}

void SLPEXP_CALL SLPFree(void* pvMem) {
  slp::client::ReleaseMemory(pvMem);
}

const char* SLPEXP_CALL SLPGetProperty(const char* pcName) {
  return slp::client::GetPropertyCall(pcName);
}

void SLPEXP_CALL SLPSetProperty(const char* pcName, const char* pcValue) {
  slp::client::SetPropertyCall(pcName, pcValue);
}

SLPError SLPEXP_CALL SLPSetAppPropertyFile(const char* pcPathname) {
  return slp::client::SetAppPropertyFileCall(pcPathname);
}
