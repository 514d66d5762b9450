// A folder of its own for the files of one test, removed with it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace slp {

class TemporaryFiles {
 public:
  TemporaryFiles()
      : folder_(std::filesystem::temp_directory_path() /
                ("properties-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directory(folder_);
  }
  TemporaryFiles(const TemporaryFiles&) = delete;
  TemporaryFiles& operator=(const TemporaryFiles&) = delete;
  ~TemporaryFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  /// Writes the file anew, byte for byte, and returns its path.
  std::string Write(const std::string& name, std::string_view text) const {
    std::ofstream file(folder_ / name, std::ios::binary);
    file << text;
    EXPECT_TRUE(file.good());
    return Path(name);
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace slp
