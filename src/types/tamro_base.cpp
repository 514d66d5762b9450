// What all service types of the family have in common.
#include <algorithm>

#include "kelsd/CKelServiceTypeTamroBase.h"
#include "types/attribute_values.h"

namespace kelsd {
namespace {

constexpr const char* kDefaultScope = "tamro";

}  // namespace

CKelServiceTypeTamroBase::CKelServiceTypeTamroBase(const std::string& address, unsigned short lifetime)
    : address_(address), lifetime_(lifetime) {
  AddScope(kDefaultScope);
  AddAttribute(ATTR_VERSION, "");
  AddAttribute(ATTR_IP_ADDRESSES, "");
}

CKelServiceTypeTamroBase::~CKelServiceTypeTamroBase() = default;

std::string CKelServiceTypeTamroBase::GetAddress() const {
  return address_;
}

void CKelServiceTypeTamroBase::SetAddress(const std::string& address) {
  address_ = address;
}

std::string CKelServiceTypeTamroBase::GetServiceURL() const {
  return GetTypeString() + "://" + GetAddress();
}

std::map<IKelServiceType::EAttr, std::string> CKelServiceTypeTamroBase::GetAttributes() const {
  return attributes_;
}

std::vector<IKelServiceType::EAttr> CKelServiceTypeTamroBase::GetAttributeTags() const {
  std::vector<EAttr> tags;
  tags.reserve(attributes_.size());
  for (const auto& [tag, value] : attributes_) {
    tags.push_back(tag);
  }
  return tags;
}

bool CKelServiceTypeTamroBase::SetAttributeValue(const EAttr& tag, const std::string& value) {
  const auto attribute = attributes_.find(tag);
  if (attribute == attributes_.end() || !HasAttribute(tag)) {
    return false;
  }
  attribute->second = value;
  return true;
}

std::string CKelServiceTypeTamroBase::GetAttributeValue(const EAttr& tag) const {
  const auto attribute = attributes_.find(tag);
  return attribute == attributes_.end() || !HasAttribute(tag) ? std::string() : attribute->second;
}

bool CKelServiceTypeTamroBase::HasAttribute(const EAttr& tag) const {
  return attributes_.count(tag) != 0;
}

std::vector<std::string> CKelServiceTypeTamroBase::GetScopes() const {
  return scopes_;
}

unsigned short CKelServiceTypeTamroBase::GetLifetime() const {
  return lifetime_;
}

void CKelServiceTypeTamroBase::SetLifetime(const unsigned short& lifetime) {
  lifetime_ = lifetime;
}

void CKelServiceTypeTamroBase::Initialize(const SKelServiceAttributeSearchResult& result) {
  for (const EAttr tag : GetAttributeTags()) {
    const auto found = result.Attributes.find(tag);
    if (found != result.Attributes.end()) {
      SetAttributeValue(tag, found->second);
    }
  }
}

std::string CKelServiceTypeTamroBase::GetAttrVersion() const {
  return GetAttributeValue(ATTR_VERSION);
}

void CKelServiceTypeTamroBase::SetAttrVersion(const std::string& version) {
  SetAttributeValue(ATTR_VERSION, version);
}

std::vector<std::string> CKelServiceTypeTamroBase::GetAttrIPAddresses() const {
  return TextToAddresses(GetAttributeValue(ATTR_IP_ADDRESSES));
}

void CKelServiceTypeTamroBase::SetAttrIPAddresses(const std::vector<std::string>& addresses) {
  SetAttributeValue(ATTR_IP_ADDRESSES, AddressesToText(addresses));
}

void CKelServiceTypeTamroBase::AddAttribute(const EAttr& tag, const std::string& value) {
  attributes_.emplace(tag, value);
}

void CKelServiceTypeTamroBase::AddScope(const std::string& scope) {
  if (std::find(scopes_.begin(), scopes_.end(), scope) == scopes_.end()) {
    scopes_.push_back(scope);
  }
}

}  // namespace kelsd
