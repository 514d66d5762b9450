// What the constructors of the concrete service types share.
#pragma once

#include "kelsd/IKelServiceType.h"

namespace kelsd {

/// An attribute that a service type carries, with the value that it has at first.
struct AttributeSeed {
  IKelServiceType::EAttr tag;
  const char* value;
};

/// The lifetime in seconds of a service object that is made from a search result, which tells none.
constexpr unsigned short kFoundServiceLifetime = 300;

}  // namespace kelsd
