// The net.slp.* settings: built-in defaults overlaid by configuration files, with typed reading (RFC 2614
// section 2.1). Values without locks; one thread at a time, or any number while nobody changes them.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "properties/file_stamp.h"
#include "properties/property_file.h"

namespace slp {

/// Where settings come from; each later file wins key by key. Unset or empty: no such file is looked for.
struct PropertyFiles {
  std::string global;
  std::string environment;  ///< what the variable OpenSLPConfig names, without white space at its ends
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

/// What the files hold that there are, each with the property that names it: all that properties are made of.
/// Where nothing has changed, two readings are equal.
struct PropertyTexts {
  struct File {
    std::string path;
    std::string_view key;             ///< net.slp.OpenSLPConfigFile and so on
    std::optional<std::string> text;  ///< none when it cannot be opened
    std::optional<FileStamp> stamp;   ///< taken before the text was read

    /// Whether both say the same, whenever they were read.
    bool operator==(const File& other) const {
      return path == other.path && key == other.key && text == other.text;
    }
  };

  std::vector<File> files;  ///< each one wins over those before it
  bool operator==(const PropertyTexts&) const = default;

  static PropertyTexts Read(const PropertyFiles& files);

  /// Whether reading these files would surely give the same again.
  bool AreStillOf(const PropertyFiles& files) const;
};

class Properties {
 public:
  /// The built-in defaults alone.
  Properties();

  /// Defaults, then the files. A file that cannot be opened is no problem unless `files.required` says so;
  /// for one that could, net.slp.OpenSLPConfigFile, net.slp.EnvConfigFile or net.slp.AppConfigFile names it.
  /// A line with a value that its property does not allow, one for a read-only property, and one that sets
  /// nothing are reported in `problems` and otherwise as if they were not there; of a list of hosts those
  /// that are some hold. Keys that nobody knows are kept.
  static Properties Load(const PropertyFiles& files, std::vector<PropertyProblem>& problems);

  /// The same of files that have been read; `required` as in PropertyFiles.
  static Properties Load(const PropertyTexts& texts, bool required, std::vector<PropertyProblem>& problems);

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
