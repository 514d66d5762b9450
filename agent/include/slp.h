/* The SLP C API (RFC 2614 section 4) and its extensions.
 *
 * A handle serves one call at a time: a call on a handle whose request is under way, from its own callback or
 * from another thread, returns SLP_HANDLE_IN_USE. Different handles may be used on different threads at once.
 * Every call is synchronous: callbacks run on the calling thread before the call returns.
 */
#ifndef SLP_H
#define SLP_H

#if defined(_WIN32)
#define SLPCALLBACK __cdecl
#define SLPEXP_CALL __cdecl
#if defined(SLP_BUILDING_SHARED)
#define SLPEXP __declspec(dllexport)
#elif defined(SLP_USING_SHARED)
#define SLPEXP __declspec(dllimport)
#else
#define SLPEXP
#endif
#else
#define SLPCALLBACK
#define SLPEXP_CALL
#if defined(SLP_BUILDING_SHARED)
#define SLPEXP __attribute__((visibility("default")))
#else
#define SLPEXP
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef enum { SLP_FALSE = 0, SLP_TRUE = 1 } SLPBoolean;

/* RFC 2614 section 4.1.2. Positive: end of a result; zero: success; negative: an error. */
typedef enum {
  SLP_LAST_CALL = 1,
  SLP_OK = 0,
  SLP_LANGUAGE_NOT_SUPPORTED = -1,
  SLP_PARSE_ERROR = -2,
  SLP_INVALID_REGISTRATION = -3,
  SLP_SCOPE_NOT_SUPPORTED = -4,
  SLP_AUTHENTICATION_ABSENT = -6,
  SLP_AUTHENTICATION_FAILED = -7,
  SLP_INVALID_UPDATE = -13,
  SLP_REFRESH_REJECTED = -15,
  SLP_NOT_IMPLEMENTED = -17,
  SLP_BUFFER_OVERFLOW = -18,
  SLP_NETWORK_TIMED_OUT = -19,
  SLP_NETWORK_INIT_FAILED = -20,
  SLP_MEMORY_ALLOC_FAILED = -21,
  SLP_PARAMETER_BAD = -22,
  SLP_NETWORK_ERROR = -23,
  SLP_INTERNAL_SYSTEM_ERROR = -24,
  SLP_HANDLE_IN_USE = -25,
  SLP_TYPE_ERROR = -26
} SLPError;

/* Default and longest lifetime of a registration, in seconds (RFC 2614 section 4.1.1). */
typedef enum { SLP_LIFETIME_DEFAULT = 10800, SLP_LIFETIME_MAXIMUM = 65535 } SLPURLLifetime;

typedef void* SLPHandle;

/* A parsed service URL; released as a whole with SLPFree. */
typedef struct srvurl {
  char* s_pcSrvType;
  char* s_pcHost;
  int s_iPort;
  char* s_pcNetFamily;
  char* s_pcSrvPart;
} SLPSrvURL;

typedef void SLPCALLBACK SLPRegReport(SLPHandle hSLP, SLPError errCode, void* pvCookie);
typedef SLPBoolean SLPCALLBACK SLPSrvTypeCallback(SLPHandle hSLP, const char* pcSrvTypes, SLPError errCode,
                                                  void* pvCookie);
typedef SLPBoolean SLPCALLBACK SLPSrvURLCallback(SLPHandle hSLP, const char* pcSrvURL,
                                                 unsigned short sLifetime, SLPError errCode, void* pvCookie);
typedef SLPBoolean SLPCALLBACK SLPAttrCallback(SLPHandle hSLP, const char* pcAttrList, SLPError errCode,
                                               void* pvCookie);

/* Opens a handle for requests in the language `pcLang` (null or empty: net.slp.locale; SLP_PARAMETER_BAD
 * when it is no language tag). `isAsync` must be SLP_FALSE, else SLP_NOT_IMPLEMENTED. The first handle loads
 * the properties. */
SLPEXP SLPError SLPEXP_CALL SLPOpen(const char* pcLang, SLPBoolean isAsync, SLPHandle* phSLP);

/* Releases the handle; one that is null or foreign is left alone. A call that uses the handle, be it the one
 * whose callback closes it or one of another thread, calls back no more, ends with its next result or its
 * time, and releases the handle then (RFC 2614 section 4.4.2). Closing the last one drops the properties. */
SLPEXP void SLPEXP_CALL SLPClose(SLPHandle hSLP);

/* Later searches on the handle go by unicast to the address `ip` (no name) at net.slp.port; registrations
 * stay with the daemon of this host. SLP_PARAMETER_BAD for anything else. */
SLPEXP SLPError SLPEXP_CALL SLPAssociateIP(SLPHandle hSLP, const char* ip);

/* Later multicast requests on the handle leave by these interfaces only (addresses or names,
 * comma-separated); SLP_PARAMETER_BAD when one isn't there. */
SLPEXP SLPError SLPEXP_CALL SLPAssociateIFList(SLPHandle hSLP, const char* list);

/* Registers a service with the daemon of this host, in the scopes of net.slp.useScopes (RFC 2614
 * section 4.5.1). `pcSrvType` may be null or empty, and does not count for a service: URL: the type is taken
 * from the URL. With `fresh` SLP_FALSE the attributes are added to those that it has (RFC 2608 section 9.3).
 * `callback` is called once, with the daemon's answer. */
SLPEXP SLPError SLPEXP_CALL SLPReg(SLPHandle hSLP, const char* pcSrvURL, unsigned short usLifetime,
                                   const char* pcSrvType, const char* pcAttrs, SLPBoolean fresh,
                                   SLPRegReport callback, void* pvCookie);

/* Withdraws a service in all its languages. */
SLPEXP SLPError SLPEXP_CALL SLPDereg(SLPHandle hSLP, const char* pcSrvURL, SLPRegReport callback,
                                     void* pvCookie);

/* Removes attributes from a service: a comma-separated list of tags, in which * stands for any characters. */
SLPEXP SLPError SLPEXP_CALL SLPDelAttrs(SLPHandle hSLP, const char* pcSrvURL, const char* pcAttrs,
                                        SLPRegReport callback, void* pvCookie);

/* Searches. Each result is reported as it comes, then an error if there was one, then SLP_LAST_CALL with
 * null, until the callback returns SLP_FALSE. A scope list that is null or empty stands for
 * net.slp.useScopes. Naming authority: "*" for all, "" for IANA's; "IANA" itself is SLP_PARAMETER_BAD. */
SLPEXP SLPError SLPEXP_CALL SLPFindSrvTypes(SLPHandle hSLP, const char* pcNamingAuthority,
                                            const char* pcScopeList, SLPSrvTypeCallback callback,
                                            void* pvCookie);

SLPEXP SLPError SLPEXP_CALL SLPFindSrvs(SLPHandle hSLP, const char* pcServiceType, const char* pcScopeList,
                                        const char* pcSearchFilter, SLPSrvURLCallback callback,
                                        void* pvCookie);

SLPEXP SLPError SLPEXP_CALL SLPFindAttrs(SLPHandle hSLP, const char* pcURLOrServiceType,
                                         const char* pcScopeList, const char* pcAttrIds,
                                         SLPAttrCallback callback, void* pvCookie);

/* The scopes of net.slp.useScopes; released with SLPFree (RFC 2614 section 4.6.2). */
SLPEXP SLPError SLPEXP_CALL SLPFindScopes(SLPHandle hSLP, char** ppcScopeList);

/* How long a service has to stay as it is registered so that no directory agent minds: the longest
   min-refresh-interval that one advertises, in seconds; 0: none does (RFC 2614 section 4.6.1). */
SLPEXP unsigned short SLPEXP_CALL SLPGetRefreshInterval(void);

/* Splits a URL; *ppSrvURL is released with SLPFree. SLP_PARSE_ERROR when it is no URL. */
SLPEXP SLPError SLPEXP_CALL SLPParseSrvURL(const char* pcSrvURL, SLPSrvURL** ppSrvURL);

/* Raw, still escaped value of one attribute of a list; SLP_PARSE_ERROR when the tag is absent. */
SLPEXP SLPError SLPEXP_CALL SLPParseAttrs(const char* pcAttrList, const char* pcAttrId, char** ppcAttrVal);

/* Escapes what is reserved in a value or, with `isTag`, in a tag, and the other way round; the text is
 * released with SLPFree. SLP_PARSE_ERROR for a character that a tag can't have, for an escape that is none,
 * and for \00. */
SLPEXP SLPError SLPEXP_CALL SLPEscape(const char* pcInbuf, char** ppcOutBuf, SLPBoolean isTag);
SLPEXP SLPError SLPEXP_CALL SLPUnescape(const char* pcInbuf, char** ppcOutBuf, SLPBoolean isTag);

/* Releases what this API handed out; null is allowed. */
SLPEXP void SLPEXP_CALL SLPFree(void* pvMem);

/* The value of a property, null when there is none. The text stays readable at least until the properties are
 * dropped, from any thread. */
SLPEXP const char* SLPEXP_CALL SLPGetProperty(const char* pcName);

/* Sets a property for this process until the properties are dropped; null or an empty text takes the
 * process's own value back. A key that can only be read stays as it is. */
SLPEXP void SLPEXP_CALL SLPSetProperty(const char* pcName, const char* pcValue);

/* Names the application's property file; SLP_PARAMETER_BAD once the properties have been loaded. */
SLPEXP SLPError SLPEXP_CALL SLPSetAppPropertyFile(const char* pcPathname);

#ifdef __cplusplus
}
#endif

#endif
