#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "commands/commands.h"
#include "support/scripted_slp/scripted_slp.h"

namespace kelsd_tool {
namespace {

constexpr const char* kDetail =
    "Out of memory. Operation aborted because it failed to allocate enough memory. Code: 2. "
    "kelsd::CKelSLPImpl::Initialize "
    "kelsd::CKelSLPImpl::InitializeInternal kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen";

constexpr const char* kAdvice = "Free memory and try again; nothing has been done.";

// Runs the doctor where SLP cannot be started.
ExitStatus RunWithoutSlp(const std::string& arguments, std::string& output, std::string& error) {
  scripted_slp::Reset();
  scripted_slp::Always(scripted_slp::Function::kOpen, scripted_slp::Returns(SLP_MEMORY_ALLOC_FAILED));
  std::ostringstream out;
  std::ostringstream errors;
  Console console(out, errors);
  ExitStatus status = kUsage;
  CLI::App app;
  AddDoctor(app, console, status);
  app.parse(arguments);
  output = out.str();
  error = errors.str();
  return status;
}

TEST(Doctor, TellsThatTheLibraryCannotBeUsed) {
  std::string output;
  std::string error;
  EXPECT_EQ(RunWithoutSlp("doctor", output, error), kFailure);
  EXPECT_EQ(output,
            "problem  library initialised: " + std::string(kDetail) + "\n         advice: " + kAdvice + "\n");
  EXPECT_EQ(error, "");
}

TEST(Doctor, TellsProgramsThatTheLibraryCannotBeUsed) {
  std::string output;
  std::string error;
  EXPECT_EQ(RunWithoutSlp("doctor --json", output, error), kFailure);
  EXPECT_EQ(
      nlohmann::json::parse(output),
      (nlohmann::json{
          {"findings",
           {{{"check", "library initialised"}, {"ok", false}, {"detail", kDetail}, {"advice", kAdvice}}}}}));
  EXPECT_EQ(error, "");
}

}  // namespace
}  // namespace kelsd_tool
