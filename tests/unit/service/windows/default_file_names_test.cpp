#include <gtest/gtest.h>

#include "unit/service/service_fixture.h"

namespace kelsd {
namespace {

class DefaultFileNames : public ServiceFixture {};

TEST_F(DefaultFileNames, AreThoseOfThisSystemWhereItNamesNoFolder) {
  scripted_slp::RemoveProperty("net.slp.OpenSLPConfigFile");
  folders.common_data.reset();
  folders.system.reset();
  EXPECT_EQ(agent.GetDefaultEnvConfigFileName(),
            "C:\\Documents and Settings\\All Users\\Application Data\\slp\\slp.conf");
  EXPECT_EQ(agent.GetSLPConfigFileName(), "%windir%\\slp.conf");
}

}  // namespace
}  // namespace kelsd
