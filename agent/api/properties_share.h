// A handle's share in the properties of the process, which last as long as there is one. Any thread.
#pragma once

#include "properties/process_properties.h"

namespace slp::client {

class PropertiesShare {
 public:
  PropertiesShare() { ProcessProperties::Instance().Acquire(); }
  ~PropertiesShare() { ProcessProperties::Instance().Release(); }
  PropertiesShare(const PropertiesShare&) = delete;
  PropertiesShare& operator=(const PropertiesShare&) = delete;
};

}  // namespace slp::client
