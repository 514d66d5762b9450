// A folder of its own for a test, gone with it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>

namespace kelsd {

/// The files of a folder that is there.
class Folder {
 public:
  explicit Folder(std::filesystem::path path) : path_(std::move(path)) {}

  std::string Path(const std::string& name) const { return (path_ / name).make_preferred().string(); }

  /// Writes a file anew, byte for byte, and returns its path.
  std::string Write(const std::string& name, std::string_view text) const {
    std::ofstream file(path_ / name, std::ios::binary);
    file << text;
    EXPECT_TRUE(file.good());
    return Path(name);
  }

  std::string Read(const std::string& name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  /// The same with "\n" for whatever the system ends lines with.
  std::string ReadText(const std::string& name) const {
    std::ifstream file(path_ / name);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 protected:
  const std::filesystem::path path_;
};

class TemporaryFolder : public Folder {
 public:
  TemporaryFolder()
      : Folder(std::filesystem::temp_directory_path() / ("kelsd-" + std::to_string(std::random_device()()))) {
    EXPECT_TRUE(std::filesystem::create_directory(path_));
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
};

}  // namespace kelsd
