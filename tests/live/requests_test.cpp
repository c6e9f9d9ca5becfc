// Requests to the application that shows the panel, while it runs and afterwards.
#include <ApplicationServices/ApplicationServices.h>

#include "live/by_hand.h"
#include "live/desktop.h"
#include "platform/element_values.h"
#include "platform/processes.h"

namespace tessarine::test {
namespace {

constexpr double endingSeconds = 5;

AXError errorOfReading(const Element& element, const std::string& attribute) {
  CFTypeRef value = nullptr;
  const CfRef<CFStringRef> name = makeCfString(attribute);
  const AXError error = AXUIElementCopyAttributeValue(element.get(), name.get(), &value);
  if (error == kAXErrorSuccess) CfRef<CFTypeRef>::adopt(value);
  return error;
}

// The error of reading once the element cannot be read any more.
int lastError(const Element& element) {
  AXError error = kAXErrorSuccess;
  pollUntil(endingSeconds, 0.05, [&] {
    error = errorOfReading(element, "AXRole");
    return error != kAXErrorSuccess;
  });
  return error;
}

TEST_F(Live, AnIdleApplicationAnswersARequestWithinAMillisecond) {
  show({});
  const Element root = panel();
  constexpr int requests = 200;
  const double took = secondsOf([&] {
    for (int i = 0; i < requests; ++i) ASSERT_EQ(axRole(root), "AXWindow");
  });
  EXPECT_LT(took / requests, 0.0009);
}

TEST_F(Live, SeveralAttributesAreAnsweredAsFastAsOne) {
  show({});
  const Element root = panel();
  const AttributeNames asked({"AXRole", "AXTitle", "AXDescription", "AXChildren"});
  constexpr int requests = 200;
  const double took = secondsOf([&] {
    for (int i = 0; i < requests; ++i) ASSERT_EQ(ElementValues(root, asked).role(), "AXWindow");
  });
  EXPECT_LT(took / requests, 0.0009);
}

TEST_F(Live, TheWindowListIsAnsweredWithinSixMilliseconds) {
  show({});
  constexpr int requests = 20;
  const double took = secondsOf([&] {
    for (int i = 0; i < requests; ++i) ASSERT_FALSE(onScreenWindows().empty());
  });
  EXPECT_LT(took / requests, 0.006);
}

// Keys that are let go and that nobody pressed: they do nothing.
TEST_F(Live, AnEventIsPostedWithinThreeTenthsOfAMillisecond) {
  show({});
  constexpr int events = 100;
  const double took = secondsOf([&] {
    for (int i = 0; i < events; ++i) postKeyEvent(application(), key_g, 0, false);
  });
  EXPECT_LT(took / events, 0.0003);
}

TEST_F(Live, AnElementOfAnApplicationThatHasEndedIsInvalid) {
  show({});
  const Element root = panel();
  stage().quit();
  EXPECT_EQ(lastError(root), -25202);
}

TEST_F(Live, ThePanelIsInvalidOnceItHasClosed) {
  show({});
  const Element root = panel();
  tryAction("AXPress", byIdentifier(root, "CancelButton"));
  EXPECT_EQ(end(), "cancelled");
  EXPECT_EQ(lastError(root), -25202);
}

TEST_F(Live, AnApplicationThatHasEndedCannotBeReached) {
  show({});
  const Element root = Element::application(application());
  stage().quit();
  EXPECT_EQ(lastError(root), -25204);
}

TEST_F(Live, TheServiceEndsWithItsApplication) {
  show({});
  const auto service = stage().service();
  if (!service) GTEST_SKIP() << "no process of its own draws the panel";
  ASSERT_NE(processCommand(*service), "");
  stage().quit();
  EXPECT_TRUE(pollUntil(endingSeconds, 0.1, [&] { return processCommand(*service).empty(); }));
}

}  // namespace
}  // namespace tessarine::test
