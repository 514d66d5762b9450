#include <array>
#include <string>
#include <vector>

#include "slp/slp_handle_box.h"
#include "support/core_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using testing::ElementsAre;

class Handles : public CoreFixture {};

struct CodeRow {
  SLPError slp;
  SResult::EError error;
};

TEST_F(Handles, OpensAHandleInEnglish) {
  SLPHandleBox box;
  EXPECT_THAT(CKelSLPImpl::OpenSLPHandle(box.handle, false), SameResult(SResult(SResult::ERR_SUCCESS)));
  EXPECT_NE(box.handle, nullptr);
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPOpen(en,0)=#1"));
}

TEST_F(Handles, PassesAsynchronousOn) {
  SLPHandleBox box;
  EXPECT_THAT(CKelSLPImpl::OpenSLPHandle(box.handle, true), SameResult(SResult(SResult::ERR_SUCCESS)));
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPOpen(en,1)=#1"));
}

TEST_F(Handles, MapsTheCodesOfOpen) {
  constexpr std::array<CodeRow, 10> kRows{{
      {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API},
      {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
      {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
      {SLP_NETWORK_INIT_FAILED, SResult::ERR_BASIC_NETWORK_INIT_FAILED},
      {SLP_NOT_IMPLEMENTED, SResult::ERR_ASYNC_NOT_SUPPORTED},
      {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
      {SLP_AUTHENTICATION_ABSENT, SResult::ERR_UNKNOWN},
      {SLP_NETWORK_ERROR, SResult::ERR_UNKNOWN},
      {SLP_LAST_CALL, SResult::ERR_UNKNOWN},
      {SLPError(-30), SResult::ERR_UNKNOWN},
  }};
  for (const CodeRow& row : kRows) {
    Next(Function::kOpen, Returns(row.slp));
    SLPHandle handle = nullptr;
    EXPECT_THAT(CKelSLPImpl::OpenSLPHandle(handle, false),
                SameResult(SResult(row.error, "", "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
    EXPECT_EQ(handle, nullptr);
  }
}

TEST_F(Handles, TellsThatOpenHandedOutNoHandle) {
  Next(Function::kOpen, scripted_slp::HandsOutNothing());
  SLPHandle handle = nullptr;
  EXPECT_THAT(
      CKelSLPImpl::OpenSLPHandle(handle, false),
      SameResult(SResult(SResult::ERR_UNKNOWN, "", "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen handle NULL")));
  EXPECT_EQ(handle, nullptr);
}

TEST_F(Handles, BindsAHandleToOneAddress) {
  SLPHandleBox box;
  ASSERT_TRUE(CKelSLPImpl::OpenSLPHandle(box.handle, false).IsOk());
  scripted_slp::ForgetCalls();
  EXPECT_THAT(CKelSLPImpl::SLPHandleAssociateIP(box.handle, "10.0.0.5"),
              SameResult(SResult(SResult::ERR_SUCCESS)));
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPAssociateIP(#1,10.0.0.5)"));
}

TEST_F(Handles, MapsTheCodesOfAssociateIP) {
  constexpr std::array<CodeRow, 9> kRows{{
      {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API},
      {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
      {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
      {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
      {SLP_NETWORK_INIT_FAILED, SResult::ERR_UNKNOWN},
      {SLP_NOT_IMPLEMENTED, SResult::ERR_UNKNOWN},
      {SLP_HANDLE_IN_USE, SResult::ERR_UNKNOWN},
      {SLP_LAST_CALL, SResult::ERR_UNKNOWN},
      {SLPError(-30), SResult::ERR_UNKNOWN},
  }};
  SLPHandleBox box;
  ASSERT_TRUE(CKelSLPImpl::OpenSLPHandle(box.handle, false).IsOk());
  for (const CodeRow& row : kRows) {
    Next(Function::kAssociateIP, Returns(row.slp));
    EXPECT_THAT(
        CKelSLPImpl::SLPHandleAssociateIP(box.handle, "10.0.0.5"),
        SameResult(SResult(row.error, "", "kelsd::CKelSLPImpl::SLPHandleAssociateIP SLPAssociateIP")));
  }
}

TEST_F(Handles, ABoxClosesItsHandleOnce) {
  {
    SLPHandleBox box;
    ASSERT_TRUE(CKelSLPImpl::OpenSLPHandle(box.handle, false).IsOk());
    const SLPHandleBox empty;
  }
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPOpen(en,0)=#1", "SLPClose(#1)"));
}

}  // namespace
}  // namespace kelsd
