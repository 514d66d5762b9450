#include "bench/end_to_end/slp_session.h"

#include <cstring>
#include <stdexcept>

#include "bench/support/services.h"

namespace bench {
namespace {

/// What the callbacks of one call gathered.
struct Outcome {
  SLPError error = SLP_OK;
  std::size_t amount = 0;
};

Outcome& OutcomeAt(void* cookie) {
  return *static_cast<Outcome*>(cookie);
}

void Require(const char* call, SLPError error) {
  if (error != SLP_OK) {
    throw std::runtime_error(std::string(call) + " failed with " + std::to_string(static_cast<int>(error)));
  }
}

void SLPCALLBACK OnReport(SLPHandle, SLPError error, void* cookie) {
  OutcomeAt(cookie).error = error;
}

SLPBoolean SLPCALLBACK OnService(SLPHandle, const char*, unsigned short, SLPError error, void* cookie) {
  Outcome& outcome = OutcomeAt(cookie);
  if (error == SLP_OK) {
    ++outcome.amount;
  } else if (error != SLP_LAST_CALL) {
    outcome.error = error;
  }
  return SLP_TRUE;
}

SLPBoolean SLPCALLBACK OnText(SLPHandle, const char* text, SLPError error, void* cookie) {
  Outcome& outcome = OutcomeAt(cookie);
  if (error == SLP_OK) {
    outcome.amount += std::strlen(text);
  } else if (error != SLP_LAST_CALL) {
    outcome.error = error;
  }
  return SLP_TRUE;
}

std::size_t Checked(const char* call, SLPError returned, const Outcome& outcome) {
  Require(call, returned);
  Require(call, outcome.error);
  return outcome.amount;
}

}  // namespace

SlpSession::SlpSession() {
  Require("SLPOpen", SLPOpen("en", SLP_FALSE, &handle_));
  Require("SLPAssociateIP", SLPAssociateIP(handle_, "127.0.0.1"));
}

SlpSession::~SlpSession() {
  SLPClose(handle_);
}

void SlpSession::RegisterFor(std::size_t index, unsigned short seconds) {
  Outcome outcome;
  Checked("SLPReg",
          SLPReg(handle_, Url(index).c_str(), seconds, kType, Attributes(index).c_str(), SLP_TRUE, OnReport,
                 &outcome),
          outcome);
}

void SlpSession::Deregister(std::size_t index) {
  Outcome outcome;
  Checked("SLPDereg", SLPDereg(handle_, Url(index).c_str(), OnReport, &outcome), outcome);
}

std::size_t SlpSession::Find(const std::string& filter) {
  Outcome outcome;
  return Checked("SLPFindSrvs", SLPFindSrvs(handle_, kType, "", filter.c_str(), OnService, &outcome),
                 outcome);
}

std::size_t SlpSession::ReadAttributes(std::size_t index) {
  Outcome outcome;
  return Checked("SLPFindAttrs", SLPFindAttrs(handle_, Url(index).c_str(), "", "", OnText, &outcome),
                 outcome);
}

std::size_t SlpSession::ReadTypes() {
  Outcome outcome;
  return Checked("SLPFindSrvTypes", SLPFindSrvTypes(handle_, "*", "", OnText, &outcome), outcome);
}

}  // namespace bench
