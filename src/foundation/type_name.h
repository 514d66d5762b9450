// The readable run-time name of a type, for messages. Stateless: any thread may call it.
#pragma once

#include <string>
#include <typeinfo>

namespace kelsd {

/// The name of `type` as a person writes it, "unsigned short" for example. Compilers spell some names
/// differently: a 64-bit unsigned number is "unsigned __int64" with one and "unsigned long" with another.
std::string ReadableTypeName(const std::type_info& type);

}  // namespace kelsd
