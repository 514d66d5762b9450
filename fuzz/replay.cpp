// Runs a fuzz target over files that are there already: the committed seeds in every test run, or an input
// that brought the fuzzer's program down. Takes files and folders as arguments.
#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"

namespace {

using std::filesystem::path;

std::vector<path> FilesOf(const path& place) {
  if (!std::filesystem::is_directory(place)) {
    return {place};
  }
  std::vector<path> files;
  for (const auto& entry : std::filesystem::directory_iterator(place)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool Replay(const path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    std::cerr << file << " cannot be opened\n";
    return false;
  }
  // Exactly as long as the input, so that a step past its end is noticed.
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  std::cout << file.filename().string() << ", " << bytes.size() << " bytes" << std::endl;
  return LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()) == 0;
}

bool ReplayAll(const std::vector<std::string>& places) {
  std::size_t replayed = 0;
  for (const std::string& place : places) {
    for (const path& file : FilesOf(place)) {
      if (!Replay(file)) {
        return false;
      }
      ++replayed;
    }
  }
  std::cout << replayed << " inputs replayed\n";
  return replayed > 0;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return ReplayAll({arguments + 1, arguments + count}) ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
