// Reading an integer from the text of an SLP property. Stateless: any thread may call it.
#pragma once

#include <string>

namespace kelsd {

/// The integer that `text` spells in decimal; leading white space is allowed, anything behind the number is
/// not.
///
/// Throws BadConversionException, with a sentence that quotes `text`, when it is no integer or does not fit
/// into an `int`.
int ParseInteger(const std::string& text);

}  // namespace kelsd
