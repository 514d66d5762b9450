#include "slpd/agent_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace slp {
namespace {

using ::testing::ElementsAre;

TEST(AgentSettingsTest, DefaultsAreThoseOfTheProperties) {
  const AgentSettings settings = AgentSettings::From(Properties());
  EXPECT_THAT(settings.scopes, ElementsAre("DEFAULT"));
  EXPECT_EQ(settings.language, "en");
  EXPECT_EQ(settings.mtu, 1400U);
  EXPECT_TRUE(settings.watch_registration_pid);
  EXPECT_EQ(settings.service_agent_attributes, "");
  EXPECT_EQ(settings.registration_file, "");
  EXPECT_FALSE(settings.trace_messages);
  EXPECT_FALSE(settings.trace_drops);
  EXPECT_FALSE(settings.trace_registrations);
  EXPECT_TRUE(settings.own_addresses.empty());
}

TEST(AgentSettingsTest, TakesEveryProperty) {
  Properties properties;
  properties.Set("net.slp.useScopes", "tamro, DEFAULT,,TAMRO");
  properties.Set("net.slp.locale", "de-AT");
  properties.Set("net.slp.MTU", "1200");
  properties.Set("net.slp.watchRegistrationPID", "false");
  properties.Set("net.slp.SAAttributes", "(room=7),(desk=a\\2cb)");
  properties.Set("net.slp.traceMsg", "true");
  properties.Set("net.slp.traceDrop", "true");
  properties.Set("net.slp.traceReg", "true");
  const AgentSettings settings = AgentSettings::From(properties);
  EXPECT_THAT(settings.scopes, ElementsAre("tamro", "DEFAULT"));
  EXPECT_EQ(settings.language, "de-AT");
  EXPECT_EQ(settings.mtu, 1200U);
  EXPECT_FALSE(settings.watch_registration_pid);
  EXPECT_EQ(settings.service_agent_attributes, "(room=7),(desk=a\\2cb)");
  EXPECT_TRUE(settings.trace_messages);
  EXPECT_TRUE(settings.trace_drops);
  EXPECT_TRUE(settings.trace_registrations);
}

TEST(AgentSettingsTest, WhatCannotBeUsedLeavesTheDefault) {
  Properties properties;
  properties.Set("net.slp.useScopes", " , ");
  properties.Set("net.slp.locale", "e n");
  properties.Set("net.slp.SAAttributes", "(room=7");
  const AgentSettings settings = AgentSettings::From(properties);
  EXPECT_THAT(settings.scopes, ElementsAre("DEFAULT"));
  EXPECT_EQ(settings.language, "en");
  EXPECT_EQ(settings.service_agent_attributes, "");
}

TEST(AgentSettingsTest, TheRegistrationFileIsAPathOrAFileUrl) {
  const std::pair<const char*, const char*> cases[] = {
      {"/etc/slp.reg", "/etc/slp.reg"},
      {"slp.reg", "slp.reg"},
      {"C:\\slp.reg", "C:\\slp.reg"},
      {"file:///etc/slp.reg", "/etc/slp.reg"},
      {"file://localhost/etc/slp.reg", "/etc/slp.reg"},
      {"file:/etc/slp.reg", "/etc/slp.reg"},
      {"file:///C:/slp.reg", "C:/slp.reg"},
      {"file:///a%20b%2fc%zz%4", "/a b/c%zz%4"},
      {"/a%20b", "/a%20b"},
      {"file://host", ""},
  };
  for (const auto& [url, path] : cases) {
    Properties properties;
    properties.Set("net.slp.serializedRegURL", url);
    EXPECT_EQ(AgentSettings::From(properties).registration_file, path);
  }
}

}  // namespace
}  // namespace slp
