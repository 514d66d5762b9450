// The net.slp.* settings: built-in defaults overlaid by configuration files, with typed reading (RFC 2614
// section 2.1). Values without locks; one thread at a time, or any number while nobody changes them.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "properties/property_file.h"

namespace slp {

/// Where settings come from; each later file wins key by key. Unset or empty: no such file is looked for.
struct PropertyFiles {
  std::string global;
  std::string environment;  ///< what the variable OpenSLPConfig names
  std::string application;
  bool required = false;  ///< a named file that cannot be opened is a problem

  /// The platform's default global file, the file that the environment names, no application file.
  static PropertyFiles Default();
};

/// Something in a file that could not be used; what would hold without it holds.
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

  /// Defaults, then the files. A file that cannot be opened is no problem unless `files.required` says so;
  /// for one that could, net.slp.OpenSLPConfigFile, net.slp.EnvConfigFile or net.slp.AppConfigFile names it.
  /// A line with a value that its property does not allow, or for a read-only property, is reported in
  /// `problems` and otherwise as if it were not there. Keys that nobody knows are kept.
  static Properties Load(const PropertyFiles& files, std::vector<PropertyProblem>& problems);

  /// None for a key that nobody knows.
  std::optional<std::string> Get(std::string_view key) const;

  /// As Get, but for a property whose last line in the files was left out: the value of that line, so that
  /// who reads it finds out for itself. A flag is no such property: nobody can tell by its value that it is
  /// none.
  std::optional<std::string> Stated(std::string_view key) const;

  /// Replaces a value, as a command-line option does; the value is not checked.
  void Set(std::string_view key, std::string value);

  /// Typed reading of the properties in the catalogue. A value that does not convert, or is out of its
  /// property's range, reads as the default; a key that nobody knows as false, 0 or empty. An int list ends
  /// before its first 0.
  bool GetBool(std::string_view key) const;
  int GetInt(std::string_view key) const;
  std::vector<int> GetIntList(std::string_view key) const;
  std::vector<std::string> GetStringList(std::string_view key) const;
  std::string GetString(std::string_view key) const;

  const std::map<std::string, std::string, std::less<>>& values() const { return values_; }

 private:
  void LeaveOut(PropertyLine line);

  std::map<std::string, std::string, std::less<>> values_;
  std::map<std::string, std::string, std::less<>> left_out_;
};

}  // namespace slp
