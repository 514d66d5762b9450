#include "bench/end_to_end/operations.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

#include "bench/support/services.h"

namespace bench {
namespace {

void Require(bool holds, const char* what) {
  if (!holds) {
    throw std::runtime_error(std::string("it doesn't hold that ") + what);
  }
}

// Spreads the runs over all registrations, in an order that is none.
std::size_t Somewhere(std::size_t number, std::size_t size) {
  return number * 7919 % size;
}

Operation FindingAll(std::size_t size) {
  return {"find all", kScans, false, true, [size](Session& session, std::size_t) {
            // What is registered beyond the size for the time being is found as well.
            Require(session.Find("") == std::min(size + kRuns, kMostDelivered), "all are found");
          }};
}

Operation ReadingAttributes(std::size_t size) {
  return {kAttributesOfOne, kRuns, true, true, [size](Session& session, std::size_t number) {
            const std::size_t index = Somewhere(number, size);
            Require(session.ReadAttributes(index) == Attributes(index).size(), "the attributes are whole");
          }};
}

}  // namespace

Operation Registering(std::size_t size) {
  return {kRegister, kRuns, true, true,
          [size](Session& session, std::size_t number) { session.Register(size + number); }};
}

Operation FindingOne(std::size_t size) {
  return {kFindOne, kRuns, true, true, [size](Session& session, std::size_t number) {
            Require(session.Find(OnlyThis(Somewhere(number, size))) == 1, "the equality filter finds one");
          }};
}

Operation Deregistering(std::size_t size) {
  return {kDeregister, kRuns, true, true,
          [size](Session& session, std::size_t number) { session.Deregister(size + number); }};
}

std::vector<Operation> OperationsAt(std::size_t size) {
  return {
      Registering(size),
      {"register again", kRuns, false, true,
       [size](Session& session, std::size_t number) { session.Register(Somewhere(number, size)); }},
      FindingOne(size),
      {"find none", kRuns, false, true,
       [](Session& session, std::size_t) { Require(session.Find("(id=nobody)") == 0, "nobody is found"); }},
      {"find one by its beginning", kRuns, false, true,
       [size](Session& session, std::size_t number) {
         Require(session.Find(OnlyThisByBeginning(Somewhere(number, size))) == 1, "the beginning finds one");
       }},
      {"find none by comparison", kRuns, false, true,
       [](Session& session, std::size_t) {
         Require(session.Find("(x-server-ns-port>=9000)") == 0, "no port is so large");
       }},
      {"find one by its end", kScans, false, true,
       [size](Session& session, std::size_t number) {
         Require(session.Find(OnlyThisByEnd(Somewhere(number, size))) == 1, "the end finds one");
       }},
      FindingAll(size),
      ReadingAttributes(size),
      {"service types", kRuns, false, false,
       [](Session& session, std::size_t) { Require(session.ReadTypes() > 0, "there is a type"); }},
      Deregistering(size),
  };
}

void Fill(const OpenSession& open, std::size_t before, std::size_t size) {
  const std::unique_ptr<Session> session = open();
  for (std::size_t index = before; index < size; ++index) {
    session->Register(index);
  }
}

void Empty(const OpenSession& open, std::size_t size) {
  const std::unique_ptr<Session> session = open();
  for (std::size_t index = 0; index < size; ++index) {
    session->Deregister(index);
  }
}

}  // namespace bench
