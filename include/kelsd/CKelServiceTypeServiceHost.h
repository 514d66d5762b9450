// A process that hosts plug-ins of some product, as a service type.
#pragma once

#include <map>
#include <string>

#include "kelsd/CKelServiceTypeTamroBase.h"
#include "kelsd/Export.h"

namespace kelsd {

/// Service type "service:servicehost.tamro:" with a concrete type behind it that the host chooses: a search
/// for the abstract type finds all hosts, one for the full type those of one kind.
class KELSD_EXPORT CKelServiceTypeServiceHost : public CKelServiceTypeTamroBase {
 public:
  /// A service host with all attributes empty. `lifetime` is in seconds.
  CKelServiceTypeServiceHost(const std::string& concreteType, const std::string& address,
                             unsigned short lifetime);
  ~CKelServiceTypeServiceHost() override;

  /// "service:servicehost.tamro"
  static std::string GetAbstractTypeString();
  std::string GetTypeString() const override;

  /// The concrete type, as given: it is not checked.
  std::string GetConcreteType() const;
  void SetConcreteType(const std::string& concreteType);

  /// All attributes, keyed and ordered by the text of their tag.
  std::map<std::string, std::string> GetAttributeMap() const;

  std::string GetAttrSDKVersion() const;
  void SetAttrSDKVersion(const std::string& version);
  std::string GetAttrProductName() const;
  void SetAttrProductName(const std::string& name);
  std::string GetAttrMode() const;
  void SetAttrMode(const std::string& mode);
  std::string GetAttrPluginName() const;
  void SetAttrPluginName(const std::string& name);
  std::string GetAttrInstanceName() const;
  void SetAttrInstanceName(const std::string& name);

 private:
  std::string concrete_type_;
};

}  // namespace kelsd
