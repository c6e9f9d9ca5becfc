// Requests about processes that are not there, and what no request is needed for.
#include <gtest/gtest.h>

#include "contract/contract.h"
#include "platform/accessibility.h"

namespace tessarine::test {
namespace {

constexpr pid_t nobody = 99999;  // beyond the platform's highest process identifier

TEST_F(Contract, AnApplicationElementNeedsNoApplication) {
  const Element one = Element::application(nobody);
  EXPECT_EQ(CFGetTypeID(one.get()), AXUIElementGetTypeID());
  EXPECT_TRUE(one == Element::application(nobody));
  EXPECT_FALSE(one == Element::application(ownProcess()));
}

TEST_F(Contract, AnApplicationElementTellsItsProcessAlsoWhenThereIsNone) {
  EXPECT_EQ(elementPid(Element::application(ownProcess())), ownProcess());
  EXPECT_EQ(elementPid(Element::application(nobody)), nobody);
}

TEST_F(Contract, RequestsToNobodyFailAndHandNothingOut) {
  const Element application = Element::application(nobody);
  EXPECT_FALSE(axValue(application, "AXWindows"));
  EXPECT_EQ(axActions(application), std::vector<std::string>{});
  EXPECT_NE(setTrue(application, "AXFrontmost"), kAXErrorSuccess);
  EXPECT_FALSE(tryAction("AXRaise", application));
}

TEST_F(Contract, NobodyIsNotGone) {
  const Element application = Element::application(nobody);
  EXPECT_FALSE(isGone(application));
  EXPECT_FALSE(answersNow(application));
  EXPECT_THROW(readText(application, "AXRole"), Unanswered);
}

TEST_F(Contract, TheAnswerLimitIsSetOnTheSystemWideElement) {
  const auto everything = CfRef<AXUIElementRef>::adopt(AXUIElementCreateSystemWide());
  EXPECT_EQ(AXUIElementSetMessagingTimeout(everything.get(), 0.5F), kAXErrorSuccess);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(everything.get(), -1), -25201);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(everything.get(), 0), kAXErrorSuccess);
}

}  // namespace
}  // namespace tessarine::test
