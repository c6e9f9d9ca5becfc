// What the stand-in frameworks promise: the platform's rules of ownership, and stricter ones.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "ApplicationServices/ApplicationServices.h"
#include "simulator/desktop/desktop.h"
#include "simulator/desktop/text.h"
#include "simulator/frameworks/ledger.h"
#include "simulator/frameworks/object.h"
#include "simulator/seams/virtual/virtual_world.h"

namespace simulator {
namespace {

constexpr Pid browser = 501;

CFStringRef cfString(const std::string& text) {
  const std::u16string units = utf16FromUtf8(text);
  return CFStringCreateWithCharacters(kCFAllocatorDefault,
                                      reinterpret_cast<const UniChar*>(units.data()),
                                      static_cast<CFIndex>(units.size()));
}

// The text of a string that is then released; "NULL" for no string.
std::string takeText(CFStringRef string) {
  if (!string) return "NULL";
  std::u16string units(static_cast<std::size_t>(CFStringGetLength(string)), u'?');
  CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)),
                        reinterpret_cast<UniChar*>(units.data()));
  CFRelease(string);
  return utf8FromUtf16(units);
}

// A desktop with one process that shows a button; the account of references starts empty and must
// end empty.
class Frameworks : public testing::Test {
 protected:
  void SetUp() override {
    ledger::reset();
    Process& process = desktop.addProcess({.pid = browser,
                                           .name = "Browser",
                                           .command = "/Browser",
                                           .application = true,
                                           .host = {}});
    Element& button = process.root.addChild("AXButton");
    button.setFrame({10, 20, 30, 40});
    button.set("AXTitle", std::string("Öffnen 打开 😀"));
    button.set("AXEnabled", true);
    button.addAction("AXPress", [] { return ax::success; });
    attachDesktop(&desktop);
  }
  void TearDown() override {
    attachDesktop(nullptr);
    EXPECT_EQ(ledger::describeLive(), "");
    EXPECT_EQ(ledger::liveReferences(), 0);
  }

  // The button's attribute, with one reference.
  CFTypeRef buttonAttribute(const std::string& name, AXError expected = kAXErrorSuccess) {
    const AXUIElementRef application = AXUIElementCreateApplication(browser);
    const CFTypeRef children = copy(application, "AXChildren");
    const auto button =
        static_cast<AXUIElementRef>(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(children), 0));
    const CFTypeRef value = copy(button, name, expected);
    CFRelease(children);
    CFRelease(application);
    return value;
  }
  static CFTypeRef copy(AXUIElementRef element, const std::string& name,
                        AXError expected = kAXErrorSuccess) {
    const CFStringRef attribute = cfString(name);
    CFTypeRef value = nullptr;
    EXPECT_EQ(AXUIElementCopyAttributeValue(element, attribute, &value), expected);
    CFRelease(attribute);
    return value;
  }

  Desktop desktop;
};

using FrameworksDeathTest = Frameworks;

TEST_F(Frameworks, TheLedgerCountsReferencesAndNamesWhoMadeTheObject) {
  const CFStringRef string = cfString("AXRole");
  CFRetain(string);
  EXPECT_EQ(ledger::liveReferences(), 2);
  EXPECT_EQ(ledger::describeLive(),
            "string \"AXRole\", made by CFStringCreateWithCharacters: 2 references\n");
  CFRelease(string);
  EXPECT_EQ(ledger::describeLive(),
            "string \"AXRole\", made by CFStringCreateWithCharacters: 1 reference\n");
  CFRelease(string);
}

TEST_F(Frameworks, ArraysRetainTheirMembersAndHandThemOutUnretained) {
  const void* member = cfString("member");
  const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, &member, 1, &kCFTypeArrayCallBacks);
  EXPECT_EQ(ledger::liveReferences(), 3);
  CFRelease(member);
  EXPECT_EQ(CFArrayGetCount(array), 1);
  EXPECT_EQ(CFArrayGetValueAtIndex(array, 0), member);
  EXPECT_EQ(ledger::liveReferences(), 2);
  CFRelease(array);
}

TEST_F(Frameworks, AbandonedReferencesAreOutOfTheAccountAndStillValid) {
  const CFStringRef string = cfString("parked");
  ledger::abandon();
  EXPECT_EQ(ledger::liveReferences(), 0);
  EXPECT_EQ(takeText(string), "parked");
}

TEST_F(Frameworks, AttributesArriveAsObjectsOfTheirType) {
  const CFTypeRef title = buttonAttribute("AXTitle");
  EXPECT_EQ(CFGetTypeID(title), CFStringGetTypeID());
  EXPECT_EQ(takeText(static_cast<CFStringRef>(title)), "Öffnen 打开 😀");

  const CFTypeRef enabled = buttonAttribute("AXEnabled");
  EXPECT_EQ(CFGetTypeID(enabled), CFBooleanGetTypeID());
  EXPECT_TRUE(CFBooleanGetValue(static_cast<CFBooleanRef>(enabled)));
  CFRelease(enabled);

  const CFTypeRef parent = buttonAttribute("AXParent");
  EXPECT_EQ(CFGetTypeID(parent), AXUIElementGetTypeID());
  CFRelease(parent);
}

TEST_F(Frameworks, PointsAndSizesAreReadAsWhatTheyAreAndNothingElse) {
  const auto position = static_cast<AXValueRef>(buttonAttribute("AXPosition"));
  const auto size = static_cast<AXValueRef>(buttonAttribute("AXSize"));
  EXPECT_EQ(CFGetTypeID(position), AXValueGetTypeID());
  EXPECT_EQ(CFGetTypeID(size), AXValueGetTypeID());
  CGPoint point{};
  EXPECT_TRUE(AXValueGetValue(position, kAXValueTypeCGPoint, &point));
  EXPECT_EQ(point.x, 10);
  EXPECT_EQ(point.y, 20);
  CGSize extent{};
  EXPECT_TRUE(AXValueGetValue(size, kAXValueTypeCGSize, &extent));
  EXPECT_EQ(extent.width, 30);
  EXPECT_EQ(extent.height, 40);
  EXPECT_FALSE(AXValueGetValue(size, kAXValueTypeCGPoint, &point));
  EXPECT_TRUE(std::isnan(point.x) && std::isnan(point.y));
  CFRelease(position);
  CFRelease(size);
}

TEST_F(Frameworks, ActionsAreListedAndPerformed) {
  const AXUIElementRef application = AXUIElementCreateApplication(browser);
  const CFTypeRef children = copy(application, "AXChildren");
  const auto button =
      static_cast<AXUIElementRef>(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(children), 0));
  CFArrayRef names = nullptr;
  ASSERT_EQ(AXUIElementCopyActionNames(button, &names), kAXErrorSuccess);
  ASSERT_EQ(CFArrayGetCount(names), 1);
  const auto press = static_cast<CFStringRef>(CFArrayGetValueAtIndex(names, 0));
  EXPECT_EQ(AXUIElementPerformAction(button, press), kAXErrorSuccess);
  const CFStringRef unknown = cfString("AXDance");
  EXPECT_EQ(AXUIElementPerformAction(button, unknown), -25206);
  for (const CFTypeRef object :
       std::initializer_list<CFTypeRef>{application, children, names, unknown}) {
    CFRelease(object);
  }
}

TEST_F(Frameworks, EventsArePostedExactlyAsGiven) {
  const CGEventRef key = CGEventCreateKeyboardEvent(nullptr, 5, true);
  CGEventSetFlags(key, 0x120000);
  const UniChar text[] = {u'g', 0xD800};
  CGEventKeyboardSetUnicodeString(key, 2, text);
  CGEventPostToPid(browser, key);
  const CGEventRef mouse = CGEventCreateMouseEvent(nullptr, kCGEventLeftMouseUp,
                                                   CGPointMake(3, 4.5), kCGMouseButtonLeft);
  CGEventSetIntegerValueField(mouse, kCGMouseEventClickState, 2);
  CGEventPost(kCGHIDEventTap, mouse);
  CFRelease(key);
  CFRelease(mouse);

  const auto& lines = desktop.record().lines();
  ASSERT_GE(lines.size(), 2u);
  const auto& postedKey = std::get<PostedKey>(lines[lines.size() - 2].entry);
  EXPECT_EQ(postedKey.target, browser);
  EXPECT_EQ(postedKey.event.keyCode, 5);
  EXPECT_TRUE(postedKey.event.down);
  EXPECT_EQ(postedKey.event.flags, 0x120000u);
  EXPECT_EQ(postedKey.event.text, std::u16string({u'g', char16_t{0xD800}}));
  const auto& postedMouse = std::get<PostedMouse>(lines.back().entry);
  EXPECT_EQ(postedMouse.target, std::nullopt);
  EXPECT_EQ(postedMouse.event.type, 2u);
  EXPECT_EQ(postedMouse.event.at, (Point{3, 4.5}));
  EXPECT_EQ(postedMouse.event.clickState, 2);
}

TEST_F(Frameworks, PressesOfAPersonAreCountedByTheTypeOfTheirEvents) {
  const auto count = [](CGEventType type) {
    return CGEventSourceCounterForEventType(kCGEventSourceStateHIDSystemState, type);
  };
  for (int i = 0; i < 3; ++i) desktop.postKey({5, true, 0, {}}, {}, Origin::person);
  desktop.postMouse({1, {15, 25}, 1}, {}, Origin::person);
  EXPECT_EQ(count(kCGEventKeyDown), 3U);
  EXPECT_EQ(count(kCGEventLeftMouseDown), 1U);
  EXPECT_EQ(count(kCGEventRightMouseDown), 0U);
  EXPECT_EQ(count(kCGEventOtherMouseDown), 0U);
}

AEDesc addressOf(std::string_view bundle) {
  AEDesc address{};
  EXPECT_EQ(AECreateDesc(typeApplicationBundleID, bundle.data(), static_cast<long>(bundle.size()),
                         &address),
            noErr);
  EXPECT_EQ(address.descriptorType, typeApplicationBundleID);
  return address;
}

OSStatus automationOf(const AEDesc& address) {
  return AEDeterminePermissionToAutomateTarget(&address, typeWildCard, typeWildCard, 0);
}

TEST_F(Frameworks, PermissionsAreTheDesktops) {
  desktop.addProcess(
      {.pid = 250, .name = "Finder", .command = "", .application = true, .host = {}});
  AEDesc finder = addressOf("com.apple.finder");
  EXPECT_TRUE(AXIsProcessTrusted());
  EXPECT_TRUE(CGPreflightScreenCaptureAccess());
  EXPECT_EQ(automationOf(finder), noErr);
  desktop.faults().untrusted = true;
  desktop.faults().screen_recording_denied = true;
  desktop.faults().automation_unasked = {"Finder"};
  EXPECT_FALSE(AXIsProcessTrusted());
  EXPECT_FALSE(CGPreflightScreenCaptureAccess());
  EXPECT_EQ(automationOf(finder), errAEEventWouldRequireUserConsent);
  EXPECT_EQ(AEDisposeDesc(&finder), noErr);
  EXPECT_EQ(finder.descriptorType, typeNull);
  EXPECT_EQ(AEDisposeDesc(&finder), noErr) << "nothing is left to dispose of";
}

TEST_F(Frameworks, TheMainDisplayHasTheFirstScreensBounds) {
  desktop.setScreens({{0, 0, 1000, 600}, {1000, -100, 800, 500}});
  const CGRect bounds = CGDisplayBounds(CGMainDisplayID());
  EXPECT_TRUE(CGRectEqualToRect(bounds, CGRectMake(0, 0, 1000, 600)));
}

TEST_F(Frameworks, FileReferencesResolveToPaths) {
  const auto resolved = [](const std::string& text) {
    const CFStringRef string = cfString(text);
    const CFURLRef url = CFURLCreateWithString(kCFAllocatorDefault, string, nullptr);
    const CFURLRef fileUrl = CFURLCreateFilePathURL(kCFAllocatorDefault, url, nullptr);
    std::string path = "NULL";
    if (fileUrl) {
      path = takeText(CFURLCopyFileSystemPath(fileUrl, kCFURLPOSIXPathStyle));
      CFRelease(fileUrl);
    }
    CFRelease(url);
    CFRelease(string);
    return path;
  };
  EXPECT_EQ(resolved("file:///.file/id=2f61206220e68993"), "/a b 打");
  EXPECT_EQ(resolved("file:///.file/id=gone"), "NULL");
  EXPECT_EQ(resolved("file:///tmp/"), "/tmp");
  EXPECT_EQ(resolved("https://example.org/tmp"), "NULL");
  EXPECT_EQ(resolved("/tmp"), "NULL");
}

// --- Misuse. ---

// The whole of what a program that misuses an object prints.
auto printsOnly(const std::string& line) {
  return testing::Eq(line + "\n");
}

TEST_F(FrameworksDeathTest, ReleasingTooOftenNamesTheObject) {
  const CFStringRef string = cfString("AXRole");
  CFRelease(string);
  EXPECT_DEATH(CFRelease(string),
               printsOnly("CFRelease: was given a released object: string \"AXRole\", made by "
                          "CFStringCreateWithCharacters"));
}

TEST_F(FrameworksDeathTest, UsingAReleasedObjectNamesTheUser) {
  const AXUIElementRef element = AXUIElementCreateApplication(browser);
  CFRelease(element);
  const CFStringRef role = cfString("AXRole");
  CFTypeRef value = nullptr;
  EXPECT_DEATH(AXUIElementCopyAttributeValue(element, role, &value),
               printsOnly("AXUIElementCopyAttributeValue: was given a released object: element 0 "
                          "of process 501, made by AXUIElementCreateApplication"));
  CFRelease(role);
}

TEST_F(FrameworksDeathTest, MembersDieWithTheArrayThatAloneHeldThem) {
  const void* member = cfString("x");
  const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, &member, 1, &kCFTypeArrayCallBacks);
  CFRelease(member);
  CFRelease(array);
  EXPECT_DEATH(CFRetain(member), printsOnly("CFRetain: was given a released object: string \"x\", "
                                            "made by CFStringCreateWithCharacters"));
}

TEST_F(FrameworksDeathTest, AReleasedObjectIsRecognisedWhileThousandsMoreComeAndGo) {
  const CFStringRef string = cfString("old");
  CFRelease(string);
  for (int i = 0; i < 4000; ++i) CFRelease(cfString("new"));
  EXPECT_DEATH(CFStringGetLength(string),
               printsOnly("CFStringGetLength: was given a released object: string \"old\", made "
                          "by CFStringCreateWithCharacters"));
}

TEST_F(FrameworksDeathTest, TakingOneKindForAnotherNamesBoth) {
  const CFStringRef string = cfString("7");
  EXPECT_DEATH(CFArrayGetCount(reinterpret_cast<CFArrayRef>(string)),
               printsOnly("CFArrayGetCount: expected array, was given string \"7\", made by "
                          "CFStringCreateWithCharacters"));
  CFRelease(string);
}

TEST_F(FrameworksDeathTest, TheValueOfAFailedCallCannotBeUsed) {
  const CFTypeRef value = buttonAttribute("AXHelp", static_cast<AXError>(-25205));
  EXPECT_DEATH(CFRelease(value),
               printsOnly("CFRelease: was given the out-parameter of a call that failed"));
}

TEST_F(FrameworksDeathTest, ANullReferenceCannotBeReleased) {
  EXPECT_DEATH(CFRelease(nullptr), printsOnly("CFRelease: was given a null reference"));
}

TEST_F(FrameworksDeathTest, OnlyPressesOnTheHardwareAreCounted) {
  const auto session = static_cast<CGEventSourceStateID>(0);
  EXPECT_DEATH(CGEventSourceCounterForEventType(session, kCGEventKeyDown),
               printsOnly("CGEventSourceCounterForEventType: only the state of the hardware is "
                          "modelled"));
  EXPECT_DEATH(
      CGEventSourceCounterForEventType(kCGEventSourceStateHIDSystemState, kCGEventLeftMouseUp),
      printsOnly("CGEventSourceCounterForEventType: only the count of presses is modelled"));
}

TEST_F(FrameworksDeathTest, NobodyIsAskedForAPermission) {
  AEDesc finder = addressOf("com.apple.finder");
  EXPECT_DEATH(AEDeterminePermissionToAutomateTarget(&finder, typeWildCard, typeWildCard, 1),
               printsOnly("AEDeterminePermissionToAutomateTarget: a question to the person is not "
                          "modelled"));
  EXPECT_DEATH(AEDeterminePermissionToAutomateTarget(&finder, typeWildCard, 1, 0),
               printsOnly("AEDeterminePermissionToAutomateTarget: only all events at once are "
                          "modelled"));
  const AEDesc disposed = finder;
  AEDisposeDesc(&finder);
  EXPECT_DEATH(automationOf(disposed),
               printsOnly("AEDeterminePermissionToAutomateTarget: was given a released object: "
                          "address, made by AECreateDesc"));
  EXPECT_DEATH(AECreateDesc(typeWildCard, "", 0, &finder),
               printsOnly("AECreateDesc: only bundle identifiers are modelled"));
}

TEST_F(FrameworksDeathTest, AnIndexOutsideTheArrayIsNamed) {
  const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks);
  EXPECT_DEATH(CFArrayGetValueAtIndex(array, 0),
               printsOnly("CFArrayGetValueAtIndex: index 0 of an array of 0"));
  CFRelease(array);
}

}  // namespace
}  // namespace simulator
