// The version resources of the DLLs and programs, read as an installer reads them.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// The full name of `name` in the folder of this program, where the build puts them all.
std::string BesideThisProgram(const std::string& name) {
  std::vector<char> own(1024);
  const DWORD length = GetModuleFileNameA(nullptr, own.data(), static_cast<DWORD>(own.size()));
  const std::string path(own.data(), length);
  return path.substr(0, path.find_last_of('\\') + 1) + name;
}

struct VersionCase {
  const char* file;
  const char* internal_name;
  const char* description;
  DWORD type;
};

class VersionResourceTest : public testing::TestWithParam<VersionCase> {
 protected:
  void SetUp() override {
    const std::string path = BesideThisProgram(GetParam().file);
    data_.resize(GetFileVersionInfoSizeA(path.c_str(), nullptr));
    ASSERT_FALSE(data_.empty()) << path;
    ASSERT_TRUE(GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(data_.size()), data_.data()));
  }

  std::string Text(const std::string& key) {
    void* value = nullptr;
    UINT length = 0;
    const std::string block = "\\StringFileInfo\\040904b0\\" + key;
    if (VerQueryValueA(data_.data(), block.c_str(), &value, &length) == FALSE) {
      return "missing";
    }
    return static_cast<const char*>(value);
  }

  std::vector<char> data_;
};

TEST_P(VersionResourceTest, NamesFileAndVersion) {
  EXPECT_EQ(Text("OriginalFilename"), GetParam().file);
  EXPECT_EQ(Text("InternalName"), GetParam().internal_name);
  EXPECT_EQ(Text("FileDescription"), GetParam().description);
  EXPECT_EQ(Text("ProductName"), "KelServiceDiscovery");
  EXPECT_EQ(Text("ProductVersion"), KELSD_VERSION);
  EXPECT_EQ(Text("FileVersion"), KELSD_VERSION);
}

TEST_P(VersionResourceTest, HoldsTheVersionAsNumbers) {
  void* value = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueA(data_.data(), "\\", &value, &length));
  ASSERT_EQ(length, sizeof(VS_FIXEDFILEINFO));
  const auto& numbers = *static_cast<const VS_FIXEDFILEINFO*>(value);
  const auto dotted = [](DWORD high, DWORD low) {
    return std::to_string(HIWORD(high)) + '.' + std::to_string(LOWORD(high)) + '.' +
           std::to_string(HIWORD(low)) + '.' + std::to_string(LOWORD(low));
  };
  EXPECT_EQ(dotted(numbers.dwFileVersionMS, numbers.dwFileVersionLS), KELSD_VERSION ".0");
  EXPECT_EQ(dotted(numbers.dwProductVersionMS, numbers.dwProductVersionLS), KELSD_VERSION ".0");
  EXPECT_EQ(numbers.dwFileType, GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(Files, VersionResourceTest,
                         testing::Values(VersionCase{"KelServiceDiscovery.dll", "KelServiceDiscovery",
                                                     "Service discovery over SLPv2", VFT_DLL},
                                         VersionCase{"slp.dll", "slp", "SLP C API", VFT_DLL},
                                         VersionCase{"slpd.exe", "slpd", "SLPv2 daemon", VFT_APP},
                                         VersionCase{"kelsd.exe", "kelsd",
                                                     "Command-line tool of KelServiceDiscovery", VFT_APP}),
                         [](const auto& test) { return std::string(test.param.internal_name); });

}  // namespace
