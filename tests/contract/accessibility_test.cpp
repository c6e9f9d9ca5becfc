// Requests about processes that are not there, and what no request is needed for.
#include <gtest/gtest.h>

#include "contract/contract.h"
#include "platform/accessibility.h"
#include "platform/cf_values.h"

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

// The array of names of these attributes.
CfRef<CFArrayRef> arrayOf(const std::vector<std::string>& names) {
  std::vector<CfRef<CFStringRef>> strings;
  std::vector<const void*> members;
  for (const std::string& name : names) {
    strings.push_back(makeCfString(name));
    members.push_back(strings.back().get());
  }
  return makeCfArray(members);
}

// "On return, an array in which each position contains the value of the attribute that is in the
// corresponding position in the passed-in array (or CFNull)"; with no options it "can contain an
// AXValueRef of type kAXValueAXErrorType in the corresponding position".
TEST_F(Contract, SeveralAttributesAreAnsweredEachAtItsPosition) {
  const Element application = Element::application(ownProcess());
  const auto names = arrayOf({"AXNoSuchAttribute", "AXRole", "AXNoSuchAttribute", "AXChildren"});
  CFArrayRef values = nullptr;
  ASSERT_EQ(AXUIElementCopyMultipleAttributeValues(application.get(), names.get(),
                                                   AXCopyMultipleAttributeOptions{}, &values),
            kAXErrorSuccess);
  const auto owned = CfRef<CFArrayRef>::adopt(values);
  const auto members = listMembers(owned.get());
  ASSERT_EQ(members.size(), 4U);
  EXPECT_EQ(textValue(members[1]), "AXApplication");
  EXPECT_EQ(CFGetTypeID(members[3]), CFArrayGetTypeID());
  for (const std::size_t missing : {0U, 2U}) {
    const CFTypeID type = CFGetTypeID(members[missing]);
    EXPECT_TRUE(type == CFNullGetTypeID() ||
                (type == AXValueGetTypeID() &&
                 AXValueGetType(static_cast<AXValueRef>(members[missing])) == kAXValueTypeAXError));
  }
}

TEST_F(Contract, SeveralAttributesOfNobodyAreNotAnswered) {
  const Element application = Element::application(nobody);
  const auto names = arrayOf({"AXRole", "AXWindows"});
  CFArrayRef values = nullptr;
  EXPECT_NE(AXUIElementCopyMultipleAttributeValues(application.get(), names.get(),
                                                   AXCopyMultipleAttributeOptions{}, &values),
            kAXErrorSuccess);
}

TEST_F(Contract, TheAnswerLimitIsSetOnTheSystemWideElement) {
  const auto everything = CfRef<AXUIElementRef>::adopt(AXUIElementCreateSystemWide());
  EXPECT_EQ(AXUIElementSetMessagingTimeout(everything.get(), 0.5F), kAXErrorSuccess);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(everything.get(), -1), -25201);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(everything.get(), 0), kAXErrorSuccess);
}

}  // namespace
}  // namespace tessarine::test
