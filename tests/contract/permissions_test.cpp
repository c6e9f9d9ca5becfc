// Permissions: what the platform answers without asking anybody.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

#include "contract/contract.h"

namespace tessarine::test::permissions {
namespace {

OSStatus automationOf(std::string_view bundle) {
  AEDesc address{};
  EXPECT_EQ(AECreateDesc(typeApplicationBundleID, bundle.data(), static_cast<long>(bundle.size()),
                         &address),
            noErr);
  EXPECT_EQ(address.descriptorType, static_cast<DescType>(typeApplicationBundleID));
  const OSStatus status =
      AEDeterminePermissionToAutomateTarget(&address, typeWildCard, typeWildCard, 0);
  EXPECT_EQ(AEDisposeDesc(&address), noErr);
  return status;
}

// "If the target application is not running, then procNotFound will be returned."
TEST_F(Contract, NobodyIsToldOfAutomationOfAnApplicationThatDoesNotRun) {
  EXPECT_EQ(automationOf("dev.tessarine.no-such-application"), procNotFound);
}

TEST_F(Contract, AutomationIsPermittedDeniedUnaskedOrOfNoApplication) {
  for (const char* bundle : {"com.apple.finder", "com.apple.systemevents"}) {
    EXPECT_THAT(automationOf(bundle),
                testing::AnyOf(noErr, errAEEventNotPermitted, errAEEventWouldRequireUserConsent,
                               procNotFound))
        << bundle;
  }
}

// An answer does not change by being asked for.
TEST_F(Contract, PermissionsAreAnsweredTheSameTwice) {
  EXPECT_EQ(AXIsProcessTrusted(), AXIsProcessTrusted());
  EXPECT_EQ(CGPreflightScreenCaptureAccess(), CGPreflightScreenCaptureAccess());
  EXPECT_EQ(automationOf("com.apple.finder"), automationOf("com.apple.finder"));
}

}  // namespace
}  // namespace tessarine::test::permissions
