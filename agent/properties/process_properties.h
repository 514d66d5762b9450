// The properties of the whole process behind SLPOpen, SLPClose, SLPGetProperty, SLPSetProperty and
// SLPSetAppPropertyFile (RFC 2614 section 4.6). Any thread.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "properties/properties.h"

namespace slp {

/// Properties are loaded from defaults and files by the first handle that is opened, or by the first read or
/// write before that, and dropped with the last handle, so that the next use reads files and environment
/// again; a file that the system says is as it was isn't read. Reading files is done under the store's lock:
/// whoever comes meanwhile waits for it.
class ProcessProperties {
 public:
  /// `find_files` names the global file and the one of the environment; it is asked at every load.
  explicit ProcessProperties(std::function<PropertyFiles()> find_files = PropertyFiles::Default);
  ProcessProperties(const ProcessProperties&) = delete;
  ProcessProperties& operator=(const ProcessProperties&) = delete;

  /// The one of this process. Never destroyed, so that it serves threads that outlive main.
  static ProcessProperties& Instance();

  /// For a handle that is opened. Each call wants one Release.
  void Acquire();

  /// For a handle that is closed; the last one drops all values.
  void Release();

  /// The value, null when there is no such property; what a file says counts also where it cannot be used
  /// (see Properties::Stated). The text is never freed: a reader that races with the last Release, or keeps
  /// the pointer for good, still finds it. Equal texts are kept once.
  const char* Get(std::string_view key);

  /// A value of the process's own, which holds against files and defaults until the properties are dropped.
  /// An empty one takes back what was set. Not checked; read-only properties stay as they are.
  void Set(std::string_view key, std::string_view value);

  /// Names the application's file. False, and nothing changes, once properties have been loaded.
  bool SetApplicationFile(std::string path);

  /// All values that are in use now, for the time of one request. The same object as long as nothing has
  /// changed them.
  std::shared_ptr<const Properties> Snapshot();

 private:
  struct Loaded {
    std::shared_ptr<const Properties> files;
    std::map<std::string, std::string, std::less<>> own;
    std::shared_ptr<const Properties> snapshot;  ///< null until it is asked for
  };

  // All with the lock held.
  Loaded& Load();
  void ReadFiles(const PropertyFiles& files);
  const char* Keep(std::string_view text);

  const std::function<PropertyFiles()> find_files_;
  std::mutex mutex_;
  std::string application_file_;
  bool has_been_loaded_ = false;
  std::size_t handles_ = 0;
  std::optional<Loaded> loaded_;

  // What the files said when they were last read, and what was made of it: for a program that opens a handle
  // for each search, and closes it.
  PropertyTexts texts_;
  std::shared_ptr<const Properties> of_texts_;
  std::set<std::string, std::less<>> kept_;
};

}  // namespace slp
