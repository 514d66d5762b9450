// The process-wide SLP state behind the facade CKelSLP, and what the discovery client and the service agent
// share: handles, text rules, URL parsing and property reading.
//
// Any thread may call it. One reader/writer lock guards the whole state and is never taken recursively:
// functions whose names end in "Internal" or "Unlocked" expect the caller to hold it.
#pragma once

#include <slp.h>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "kelsd/CKelSLPConfig.h"
#include "kelsd/CKelSLPServiceConfig.h"
#include "kelsd/SKelServiceSearchResult.h"
#include "kelsd/SResult.h"
#include "platform/reader_writer_lock.h"

namespace kelsd {

/// All operations return a result and never throw; outputs are written only on success. The state is created
/// at first use and never destroyed, so that threads which outlive main() find it whole.
class CKelSLPImpl {
 public:
  virtual ~CKelSLPImpl();

  // Lifecycle. The core is initialised exactly while it holds the resident handle.

  /// Opens the resident handle, takes the snapshot of the properties and applies the cached client
  /// configuration. Does nothing when the core is initialised. Waits for running searches.
  [[nodiscard]] static SResult Initialize();
  static bool IsInitialized();
  /// Initialises again, after forgetting the cached client configuration if `clearClientConfig` says so. When
  /// it fails the core is no longer initialised. Waits for running searches.
  [[nodiscard]] static SResult ReInitialize(bool clearClientConfig);
  /// Closes the resident handle and forgets the cached client configuration. For a host that unloads the
  /// library.
  static void Shutdown();

  static bool IsInitializedUnlocked();
  static void CloseResidentHandleUnlocked();
  [[nodiscard]] static SResult InitializeInternal();
  [[nodiscard]] static SResult ReInitializeInternal(bool clearClientConfig);

  /// The lock of the core: exclusive to change its state, shared for the whole of a search.
  static platform::ReaderWriterLock& CoreLock();
  /// Held by an operation for as long as it has a handle open without holding the core lock. Properties that
  /// this process has set last as long as any handle is open, so that a snapshot taken meanwhile would show
  /// the settings of the clients as the daemon's: it waits. Taken after the core lock; nothing is taken under
  /// it.
  static std::mutex& HandleLock();
  /// All SLP properties as they were at the last initialisation.
  static const CKelSLPServiceConfig& PropertySnapshotUnlocked();
  /// What could not be read or was rejected while the snapshot was taken.
  static const std::vector<SResult>& SnapshotErrorsUnlocked();

  // Handles.

  /// Opens a handle for one operation, in the language "en". The caller closes it with SLPClose.
  [[nodiscard]] static SResult OpenSLPHandle(SLPHandle& handle, bool async);
  /// Sends the next requests on `handle` by unicast to the address `ip`.
  [[nodiscard]] static SResult SLPHandleAssociateIP(SLPHandle handle, const std::string& ip);

  /// Runs `body`; a std::bad_alloc becomes ERR_OUT_OF_MEMORY, any other std::exception ERR_BASIC_API, the
  /// exception's text the detail.
  static SResult InvokeNoThrow(const std::function<SResult()>& body);
  /// Runs `body` as InvokeNoThrow does and puts `name` and a blank in front of the debug trail of a failure.
  template <typename Body>
  [[nodiscard]] static SResult InvokeNamed(const char* name, const Body& body) {
    const auto named = [&] {
      const SResult result = InvokeNoThrow(std::cref(body));
      return result.IsOk() ? SResult(SResult::ERR_SUCCESS) : result.PrependErrorDebug(name, " ");
    };
    // By reference, since a function object that copies its captures may need memory before anything guards
    // it.
    return InvokeNoThrow(std::cref(named));
  }

  // Text rules. They need neither the lock nor an initialised core.

  /// Escapes or unescapes an attribute value (RFC 2608 section 5).
  [[nodiscard]] static SResult EscapeSLPCharacters(std::string& out, const std::string& in);
  [[nodiscard]] static SResult UnescapeSLPCharacters(std::string& out, const std::string& in);
  /// Whether `tag`, as given, may name an attribute.
  [[nodiscard]] static SResult ValidateTag(const std::string& tag);
  /// Whether `scope`, as given, may name a scope.
  [[nodiscard]] static SResult ValidateScope(const std::string& scope);
  /// "a,b": the scopes as they are given, white space at their ends included.
  [[nodiscard]] static SResult CreateScopesList(std::string& list, const std::vector<std::string>& scopes);
  /// "a,b": the trimmed tags; a tag that differs from an earlier one only in letter case is left out.
  [[nodiscard]] static SResult CreateAttributeTagsList(std::string& list,
                                                       const std::vector<std::string>& tags);
  /// "(a=1),(b=2)" with escaped values; two tags that differ only in letter case are an error.
  [[nodiscard]] static SResult CreateSLPAttributeList(std::string& list,
                                                      const std::map<std::string, std::string>& attributes);
  /// The unescaped value of one attribute of `attributeList`.
  [[nodiscard]] static SResult ParseAttribute(std::string& value, const std::string& tag,
                                              const std::string& attributeList);

  /// Splits `url` into the members of `result`; its URL and lifetime are the caller's to set. Needs neither
  /// the lock nor an initialised core.
  [[nodiscard]] static SResult ParseServiceURL(SKelServiceSearchResult& result, const std::string& url);

  // Properties. The caller holds the core lock.

  [[nodiscard]] static SResult GetSLPProperty(std::string& value, const std::string& key);
  [[nodiscard]] static SResult GetStringProperty(std::string& value,
                                                 const CKelSLPConfig::EProperty& property);
  [[nodiscard]] static SResult GetBoolProperty(bool& value, const CKelSLPConfig::EProperty& property);
  [[nodiscard]] static SResult GetNumericProperty(int& value, const CKelSLPConfig::EProperty& property);
  [[nodiscard]] static SResult GetStringListProperty(std::vector<std::string>& value,
                                                     const CKelSLPConfig::EProperty& property);
  [[nodiscard]] static SResult GetTimeoutList(std::vector<int>& value,
                                              const CKelSLPConfig::EProperty& property);
  [[nodiscard]] static SResult ParseNumericProperty(int& value, const std::string& text);
  /// At most six values; a blank piece or a zero ends the list.
  [[nodiscard]] static SResult ParseTimeoutsList(std::vector<int>& value, const std::string& text);
  /// Sets a property for this process until the properties are loaded again.
  static void SetSLPProperty(const CKelSLPConfig::EProperty& property, const std::string& value);

  // Client configuration.

  /// Reads what the SLP library currently uses. `errors` is replaced by one entry for each property that
  /// could not be read, which then holds its default, followed by the values that the record rejected. Single
  /// failures don't make the call fail. Takes the core lock.
  [[nodiscard]] static SResult GetSLPClientConfig(CKelSLPClientConfig& config, std::vector<SResult>& errors);
  /// Keeps `config` in this process and initialises again, which applies it. Does nothing when it equals the
  /// one kept. Takes the core lock; waits for running searches.
  [[nodiscard]] static SResult SetSLPClientConfig(const CKelSLPClientConfig& config);

 private:
  struct State;
  static State& GetState();

  static void GetSLPServiceConfigInternal(CKelSLPServiceConfig& config, std::vector<SResult>& errors);
  static void ApplyClientConfigInternal(const CKelSLPClientConfig& config);
};

}  // namespace kelsd
