// What all service types of the family have in common: everything but the service type string.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "kelsd/Export.h"
#include "kelsd/IKelServiceType.h"
#include "kelsd/SKelServiceAttributeSearchResult.h"

namespace kelsd {

/// Keeps address, scopes, lifetime and attributes. The set of attribute tags is fixed at construction: values
/// can be changed, and are taken from a search, only for the tags that the constructors have added. No
/// operation fails. Copies are independent; an object is used by one thread at a time.
class KELSD_EXPORT CKelServiceTypeTamroBase : public IKelServiceType {
 public:
  /// A service in the scope "tamro" with the attributes x-version and x-ip-addresses, both empty. The address
  /// is kept as given; `lifetime` is in seconds.
  CKelServiceTypeTamroBase(const std::string& address, unsigned short lifetime);
  ~CKelServiceTypeTamroBase() override;

  std::string GetAddress() const override;
  void SetAddress(const std::string& address) override;
  /// Type string, "://" and address, unescaped and unchecked.
  std::string GetServiceURL() const override;
  std::map<EAttr, std::string> GetAttributes() const override;
  std::vector<EAttr> GetAttributeTags() const override;
  /// The value is stored as given.
  bool SetAttributeValue(const EAttr& tag, const std::string& value) override;
  std::string GetAttributeValue(const EAttr& tag) const override;
  bool HasAttribute(const EAttr& tag) const override;
  std::vector<std::string> GetScopes() const override;
  unsigned short GetLifetime() const override;
  void SetLifetime(const unsigned short& lifetime) override;

  /// Takes the values that a search found for the tags that this object carries; all else stays as it is.
  virtual void Initialize(const SKelServiceAttributeSearchResult& result);

  std::string GetAttrVersion() const;
  void SetAttrVersion(const std::string& version);

  /// The addresses trimmed, in upper case and sorted, in whichever form they were registered.
  std::vector<std::string> GetAttrIPAddresses() const;
  void SetAttrIPAddresses(const std::vector<std::string>& addresses);

 protected:
  /// Gives the type an attribute; does nothing when it has that one already.
  void AddAttribute(const EAttr& tag, const std::string& value);
  /// Adds a scope at the end, unless an identical one is there.
  void AddScope(const std::string& scope);

 private:
  std::string address_;
  std::map<EAttr, std::string> attributes_;
  std::vector<std::string> scopes_;
  unsigned short lifetime_;
};

}  // namespace kelsd
