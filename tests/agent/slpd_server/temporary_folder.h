// A folder of its own for a test, gone with the test.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace slp {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    static std::atomic<int> counter{0};
    path_ = std::filesystem::temp_directory_path() /
            ("slpd-test-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) +
             "-" + std::to_string(++counter));
    std::filesystem::create_directory(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string File(const std::string& name) const { return (path_ / name).string(); }

  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(File(name), std::ios::binary) << content;
    return File(name);
  }

  std::string Read(const std::string& name) const {
    std::ifstream file(File(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  /// The same with "\n" for whatever the system ends lines with.
  std::string ReadText(const std::string& name) const {
    std::ifstream file(File(name));
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  std::filesystem::path path_;
};

}  // namespace slp
