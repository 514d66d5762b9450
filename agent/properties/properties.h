// The net.slp.* settings: built-in defaults overlaid by configuration files, with typed reading (RFC 2614 section 2.1).
// Values without locks; one thread at a time, or any number while nobody changes them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace slp {

/// Where settings come from; each later file wins key by key. Unset or empty: no such file is looked for.
struct PropertyFiles {
  std::string global;
  std::string environment;  ///< what the variable OpenSLPConfig names
  std::string application;

  /// The platform's default global file, the file that the environment names, no application file.
  static PropertyFiles Default();
};

/// Something in a file that could not be used; the default stands instead.
struct PropertyProblem {
  std::string file;
  int line = 0;  ///< 0: the file as a whole
  std::string text;

  /// "FILE:LINE: TEXT", or "FILE: TEXT".
  std::string ToString() const;
};

class Properties {
 public:
  /// The built-in defaults alone.
  Properties();

  /// Defaults, then the files. Files that cannot be opened are no problem unless `required` says so. Values that
  /// their property does not allow are reported in `problems` and leave the default.
  static Properties Load(const PropertyFiles& files, std::vector<PropertyProblem>& problems);

  /// None for a key that nobody knows.
  std::optional<std::string> Get(std::string_view key) const;

  /// Replaces a value, as a command-line option does; the value is not checked.
  void Set(std::string_view key, std::string value);

  /// Typed reading of the properties in the table of defaults. A value that does not convert reads as the default.
  bool GetBool(std::string_view key) const;
  int GetInt(std::string_view key) const;
  std::vector<int> GetIntList(std::string_view key) const;
  std::vector<std::string> GetStringList(std::string_view key) const;
  std::string GetString(std::string_view key) const;

  const std::map<std::string, std::string, std::less<>>& values() const { return values_; }

 private:
  std::map<std::string, std::string, std::less<>> values_;
};

}  // namespace slp
