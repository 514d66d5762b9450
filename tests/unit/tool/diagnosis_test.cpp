#include "diagnosis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kelsd/CKelSLPServiceConfig.h"

namespace kelsd_tool {

void PrintTo(const Finding& finding, std::ostream* out) {
  *out << (finding.ok ? "ok " : "problem ") << finding.check << ": " << finding.detail << " / "
       << finding.advice;
}

namespace {

using kelsd::CKelSLPConfig;
using kelsd::SKelServiceSearchResult;
using kelsd::SResult;

const SResult kSuccess(SResult::ERR_SUCCESS);

SKelServiceSearchResult Agent(const std::string& host) {
  return {"service:service-agent://" + host, 0, "service:service-agent", host};
}

constexpr const char* kUnicastAdvice =
    "Check that the daemon was started with this configuration file (kelsd slpd restart), and that no "
    "firewall "
    "closes the port.";
constexpr const char* kMulticastAdvice =
    "Check that the network interface allows multicast to 239.255.255.253, that no firewall drops it, and "
    "the "
    "addresses in net.slp.interfaces.";
constexpr const char* kOthersAdvice =
    "The slpd of this host is not found by the others. Check that its firewall lets the daemon's port in by "
    "UDP, "
    "and the addresses in net.slp.interfaces, then: kelsd slpd restart";

TEST(Diagnosis, JudgesSettings) {
  EXPECT_EQ(JudgeSettings({}, {}),
            (Findings{{"properties readable", true, "", ""}, {"settings as required", true, "", ""}}));
  const SResult unread(SResult::ERR_PROPERTY_PARSE, "Property: Port. ", "f");
  EXPECT_EQ(JudgeSettings({unread}, {{CKelSLPConfig::PROP_TRACEMSG, "Traces."},
                                     {CKelSLPConfig::PROP_WATCHREGISTRATIONPID, "Does not watch."},
                                     {CKelSLPConfig::PROP_OPENSLPVERSION, "Is another."},
                                     {CKelSLPConfig::PROP_PORT, "The port is wrong."}}),
            (Findings{{"properties readable", false, unread.ToString(),
                       "Correct the value in the configuration file; until then the default counts."},
                      {"settings as required", false, "Traces.",
                       "Change it: kelsd config set net.slp.traceMsg=false"},
                      {"settings as required", false, "Does not watch.",
                       "Change it: kelsd config set net.slp.watchRegistrationPID=true"},
                      {"settings as required", false, "Is another.",
                       "Install the SLP version that the library was made for."},
                      {"settings as required", false, "The port is wrong.",
                       "Correct net.slp.port in the configuration file, then: kelsd slpd restart"}}));
}

// Each stands as it must not be; the advice is the opposite.
TEST(Diagnosis, AdvisesWhatTheSettingsThatCanBeChangedMustBe) {
  kelsd::CKelSLPServiceConfig config;
  config.SetWatchRegistrationPID(false);
  config.SetTraceDATraffic(true);
  config.SetTraceReg(true);
  config.SetTraceDrop(true);
  config.SetTraceMsg(true);
  config.SetAppendLog(true);
  std::vector<std::string> advice;
  for (const Finding& finding : JudgeSettings({}, config.Validate())) {
    if (finding.advice.rfind("Change it", 0) == 0) {
      advice.push_back(finding.advice);
    }
  }
  EXPECT_THAT(advice,
              testing::UnorderedElementsAre("Change it: kelsd config set net.slp.watchRegistrationPID=true",
                                            "Change it: kelsd config set net.slp.traceDATraffic=false",
                                            "Change it: kelsd config set net.slp.traceReg=false",
                                            "Change it: kelsd config set net.slp.traceDrop=false",
                                            "Change it: kelsd config set net.slp.traceMsg=false",
                                            "Change it: kelsd config set net.slp.appendLog=false"));
}

TEST(Diagnosis, JudgesWhetherTheDaemonRuns) {
  EXPECT_EQ(JudgeRunning(kSuccess, true), (Finding{"slpd running", true, "", ""}));
  EXPECT_EQ(JudgeRunning(kSuccess, false), (Finding{"slpd running", false, "slpd does not run on this host.",
                                                    "Start it: kelsd slpd start"}));
  const SResult failed(SResult::ERR_SLPD_QUERY, "Refused.\r\n", "f");
  EXPECT_EQ(JudgeRunning(failed, false),
            (Finding{"slpd running", false, SResult(SResult::ERR_SLPD_QUERY, "Refused.", "f").ToString(),
                     "Check that this user may read the state of slpd; 'kelsd doctor' tells more."}));
}

TEST(Diagnosis, JudgesTheAnswerByUnicast) {
  const std::string check = "slpd answers by unicast";
  EXPECT_EQ(JudgeUnicast(kSuccess, {Agent("127.0.0.1")}),
            (Finding{check, true, "service:service-agent://127.0.0.1", ""}));
  EXPECT_EQ(JudgeUnicast(kSuccess, {}), (Finding{check, false, "Nobody answered.", kUnicastAdvice}));
  const SResult failed(SResult::ERR_NETWORK_TIMED_OUT, "", "f");
  EXPECT_EQ(JudgeUnicast(failed, {}), (Finding{check, false, failed.ToString(), kUnicastAdvice}));
}

TEST(Diagnosis, TellsTheOwnHostsAnswerFromOthers) {
  const std::string check = "slpd answers by multicast";
  const std::vector<std::string> own = {"127.0.0.1", "10.0.0.5"};
  EXPECT_EQ(JudgeMulticast(kSuccess, {Agent("10.0.0.5")}, own),
            (Finding{check, true, "service:service-agent://10.0.0.5", ""}));
  EXPECT_EQ(JudgeMulticast(kSuccess, {Agent("127.0.0.1")}, {}),
            (Finding{check, true, "service:service-agent://127.0.0.1", ""}));
  EXPECT_EQ(JudgeMulticast(kSuccess, {Agent("10.0.0.4"), Agent("10.0.0.5"), Agent("10.0.0.50")}, own),
            (Finding{check, true,
                     "service:service-agent://10.0.0.5; other hosts too: service:service-agent://10.0.0.4, "
                     "service:service-agent://10.0.0.50",
                     ""}));
  EXPECT_EQ(JudgeMulticast(kSuccess, {Agent("10.0.0.4"), Agent("10.0.0.50")}, own),
            (Finding{check, false,
                     "Only other hosts answered: service:service-agent://10.0.0.4, "
                     "service:service-agent://10.0.0.50.",
                     kOthersAdvice}));
  EXPECT_EQ(JudgeMulticast(kSuccess, {}, own), (Finding{check, false, "Nobody answered.", kMulticastAdvice}));
  const SResult failed(SResult::ERR_NETWORK_INIT_FAILED, "", "f");
  EXPECT_EQ(JudgeMulticast(failed, {}, own), (Finding{check, false, failed.ToString(), kMulticastAdvice}));
}

TEST(Diagnosis, IsPrintedForPeopleAndPrograms) {
  const Findings findings = {{"a", true, "", ""}, {"b", true, "well", ""}, {"c", false, "ill", "Heal it."}};
  EXPECT_EQ(ToLines(findings), (std::vector<std::string>{"ok       a", "ok       b: well", "problem  c: ill",
                                                         "         advice: Heal it."}));
  EXPECT_EQ(ToJson(Findings{findings.back()}),
            (nlohmann::json{{{"check", "c"}, {"ok", false}, {"detail", "ill"}, {"advice", "Heal it."}}}));
}

}  // namespace
}  // namespace kelsd_tool
