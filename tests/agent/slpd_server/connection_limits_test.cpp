#include "slpd/server/connection_limits.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

const asio::ip::address kOne = asio::ip::make_address("127.0.0.1");
const asio::ip::address kStranger = asio::ip::make_address("10.0.0.9");
const asio::ip::address kOther = asio::ip::make_address("127.0.0.2");

ConnectionLimits Limits() {
  ConnectionLimits limits;
  limits.connections = 3;
  limits.connections_per_peer = 2;
  limits.bytes = 1000;
  limits.bytes_per_peer = 600;
  return limits;
}

TEST(ConnectionAccounts, CountByPeerAndInAll) {
  ConnectionAccounts accounts(Limits());
  accounts.Add(kOne);
  EXPECT_FALSE(accounts.PeerFull(kOne));
  accounts.Add(kOne);
  EXPECT_TRUE(accounts.PeerFull(kOne));
  EXPECT_FALSE(accounts.PeerFull(kOther));
  EXPECT_FALSE(accounts.FullFor(kOther));
  accounts.Add(kOther);
  EXPECT_TRUE(accounts.FullFor(kOther));
  accounts.Remove(kOne);
  EXPECT_FALSE(accounts.FullFor(kOther));
  EXPECT_FALSE(accounts.PeerFull(kOne));
  EXPECT_EQ(accounts.connections(), 2U);
}

TEST(ConnectionAccounts, ChargeUpToTheLimitsAndNotAByteMore) {
  ConnectionAccounts accounts(Limits());
  accounts.Add(kOne);
  accounts.Add(kOther);
  EXPECT_TRUE(accounts.Charge(kOne, 0, 600));
  EXPECT_FALSE(accounts.Charge(kOne, 600, 601));
  EXPECT_TRUE(accounts.Charge(kOther, 0, 400));
  EXPECT_FALSE(accounts.Charge(kOther, 400, 401)) << "all peers together hold 1000";
  EXPECT_EQ(accounts.bytes(), 1000U);
  EXPECT_TRUE(accounts.Charge(kOne, 600, 100));
  EXPECT_TRUE(accounts.Charge(kOther, 400, 600));
  EXPECT_EQ(accounts.bytes(), 700U);
}

TEST(ConnectionAccounts, AnEighthIsKeptForThisHost) {
  ConnectionLimits limits;
  limits.connections = 16;
  limits.bytes = 800;
  ConnectionAccounts accounts(limits);
  for (int number = 1; number <= 14; ++number) {
    EXPECT_FALSE(accounts.FullFor(kStranger)) << number;
    accounts.Add(kStranger);
  }
  EXPECT_TRUE(accounts.FullFor(kStranger));
  EXPECT_FALSE(accounts.FullFor(kOne));
  EXPECT_FALSE(accounts.FullFor(asio::ip::address_v6::loopback()));
  accounts.Add(kOne);
  accounts.Add(kOne);
  EXPECT_TRUE(accounts.FullFor(kOne));
  EXPECT_FALSE(accounts.Charge(kStranger, 0, 701));
  EXPECT_TRUE(accounts.Charge(kStranger, 0, 700));
  EXPECT_TRUE(accounts.Charge(kOne, 0, 100));
}

TEST(ConnectionAccounts, WhatAPeerHeldIsFreeAgainWhenItsLastConnectionGoes) {
  ConnectionAccounts accounts(Limits());
  accounts.Add(kOne);
  EXPECT_TRUE(accounts.Charge(kOne, 0, 500));
  accounts.Remove(kOne);
  EXPECT_EQ(accounts.bytes(), 0U);
  EXPECT_EQ(accounts.connections(), 0U);
  accounts.Remove(kOne);
  EXPECT_EQ(accounts.connections(), 0U) << "removing what is not there changes nothing";
}

}  // namespace
}  // namespace slp
