#include "slpd/server/trace.h"

#include <gtest/gtest.h>

#include <sstream>

namespace slp {
namespace {

TEST(TraceTest, TooMuchToCompareIsToldOnceAMinuteWithWhatToDo) {
  std::ostringstream stream;
  Log log(stream, [] { return std::chrono::system_clock::time_point(std::chrono::seconds(1'700'000'000)); });
  Trace trace(log);
  const RequestOrigin origin{"10.0.0.7", false, true, Transport::kUdpUnicast, ""};
  trace.OnTooMuchToCompare(origin, 11);
  trace.OnTooMuchToCompare(origin, 12);
  const std::string text = stream.str();
  EXPECT_EQ(
      text.substr(text.find(" refusal ")),
      " refusal a request from 10.0.0.7 (UDP) takes more comparisons than one may, it is refused after 11 "
      "services: fewer terms or wildcards, or a term that the index narrows the search by, (tag=value) or "
      "(tag=beginning*), make it possible\n");
}

}  // namespace
}  // namespace slp
