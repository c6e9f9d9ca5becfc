#include "platform/accessibility.h"

#include "core/lists.h"
#include "core/tool_error.h"
#include "platform/ax_values.h"
#include "platform/cf_values.h"

namespace tessarine {
namespace {

std::string textOrEmpty(const Element& element, const std::string& attribute) {
  return axString(element, attribute).value_or("");
}

void appendFocusedAndMain(const Element& app, std::vector<Element>& windows) {
  for (const char* attribute : {"AXFocusedWindow", "AXMainWindow"}) {
    const auto window = axElementAttribute(app, attribute);
    if (window && !isAmong(windows, *window)) windows.push_back(*window);
  }
}

int setValue(const Element& element, const std::string& attribute, CFTypeRef value) {
  return AXUIElementSetAttributeValue(element.get(), makeCfString(attribute).get(), value);
}

// The value, null when the element answered that it has none. Throws Unanswered.
struct Answer {
  CfRef<CFTypeRef> value;
  AXError error;
};

Answer answerFor(const Element& element, const std::string& attribute) {
  CFTypeRef value = nullptr;
  const auto name = makeCfString(attribute);
  const AXError error = AXUIElementCopyAttributeValue(element.get(), name.get(), &value);
  if (error == kAXErrorInvalidUIElement) throw Unanswered(true);
  if (error == kAXErrorCannotComplete || error == kAXErrorAPIDisabled) throw Unanswered(false);
  return {CfRef<CFTypeRef>::adopt(error == kAXErrorSuccess ? value : nullptr), error};
}

CfRef<CFTypeRef> answeredValue(const Element& element, const std::string& attribute) {
  return answerFor(element, attribute).value;
}

std::optional<Unanswered> whyUnanswered(const Element& element) {
  try {
    answeredValue(element, "AXRole");
    return {};
  } catch (const Unanswered& unanswered) {
    return unanswered;
  }
}

bool saysThereIsNone(AXError error) {
  return error == kAXErrorAttributeUnsupported || error == kAXErrorNoValue;
}

}  // namespace

CfRef<CFTypeRef> axValue(const Element& element, const std::string& attribute) {
  CFTypeRef value = nullptr;
  const auto name = makeCfString(attribute);
  if (AXUIElementCopyAttributeValue(element.get(), name.get(), &value) != kAXErrorSuccess) {
    return {};
  }
  return CfRef<CFTypeRef>::adopt(value);
}

std::optional<std::string> axString(const Element& element, const std::string& attribute) {
  return textValue(axValue(element, attribute).get());
}

std::optional<Element> axElementAttribute(const Element& element, const std::string& attribute) {
  return elementIn(axValue(element, attribute).get());
}

std::vector<Element> axElements(const Element& element, const std::string& attribute) {
  return elementsIn(axValue(element, attribute).get()).value_or(std::vector<Element>{});
}

bool axIsTrue(const Element& element, const std::string& attribute) {
  return isTrue(axValue(element, attribute).get());
}

std::string axRole(const Element& element) {
  return textOrEmpty(element, "AXRole");
}

std::string axTitle(const Element& element) {
  return textOrEmpty(element, "AXTitle");
}

std::string axSubrole(const Element& element) {
  return textOrEmpty(element, "AXSubrole");
}

std::string axDescription(const Element& element) {
  return textOrEmpty(element, "AXDescription");
}

std::string axInputValue(const Element& element) {
  return textOrEmpty(element, "AXValue");
}

std::string fileNameAttribute(const Element& element) {
  return textOrEmpty(element, "AXFilename");
}

std::string displayLabel(const Element& element) {
  for (const char* attribute : labelAttributes) {
    std::string text = textOrEmpty(element, attribute);
    if (!text.empty()) return text;
  }
  return {};
}

std::vector<Element> axChildren(const Element& element) {
  return axElements(element, "AXChildren");
}

std::optional<Element> axParent(const Element& element) {
  const auto parent = axValue(element, "AXParent");
  if (!parent) return {};
  return sharedElement(parent.get());
}

std::vector<std::string> axActions(const Element& element) {
  CFArrayRef names = nullptr;
  if (AXUIElementCopyActionNames(element.get(), &names) != kAXErrorSuccess) return {};
  return textList(CfRef<CFArrayRef>::adopt(names).get());
}

bool axOffers(const Element& element, const std::string& action) {
  return isAmong(axActions(element), action);
}

Rect axFrame(const Element& element) {
  const auto position = axValue(element, "AXPosition");
  const auto size = axValue(element, "AXSize");
  return frameOf(position.get(), size.get()).value_or(Rect{});
}

std::optional<std::string> axURLPath(const Element& element) {
  return locationIn(axValue(element, "AXURL").get());
}

std::optional<std::string> readText(const Element& element, const std::string& attribute) {
  return textValue(answeredValue(element, attribute).get());
}

std::optional<bool> readFlag(const Element& element, const std::string& attribute) {
  const auto value = answeredValue(element, attribute);
  if (!value || CFGetTypeID(value.get()) != CFBooleanGetTypeID()) return {};
  return isTrue(value.get());
}

std::optional<Element> readElement(const Element& element, const std::string& attribute) {
  return elementIn(answeredValue(element, attribute).get());
}

std::optional<std::vector<Element>> readElements(const Element& element,
                                                 const std::string& attribute) {
  return elementsIn(answeredValue(element, attribute).get());
}

std::vector<Element> readList(const Element& element, const std::string& attribute) {
  return readElements(element, attribute).value_or(std::vector<Element>{});
}

std::optional<std::vector<Element>> readDecisive(const Element& element,
                                                 const std::string& attribute) {
  const Answer answer = answerFor(element, attribute);
  if (answer.error != kAXErrorSuccess && !saysThereIsNone(answer.error)) throw Unanswered(false);
  return elementsIn(answer.value.get());
}

std::optional<Rect> readFrame(const Element& element) {
  const auto position = answeredValue(element, "AXPosition");
  const auto size = answeredValue(element, "AXSize");
  return frameOf(position.get(), size.get());
}

std::optional<std::string> readLocation(const Element& element) {
  const auto path = locationIn(answeredValue(element, "AXURL").get());
  return path && path->starts_with('/') ? path : std::nullopt;
}

bool isGone(const Element& element) {
  const auto unanswered = whyUnanswered(element);
  return unanswered && unanswered->gone();
}

bool answersNow(const Element& element) {
  const auto unanswered = whyUnanswered(element);
  return !unanswered || unanswered->gone();
}

std::vector<Element> focusedAndMainWindows(const Element& app) {
  std::vector<Element> windows;
  appendFocusedAndMain(app, windows);
  return windows;
}

std::vector<Element> topLevelWindows(const Element& app) {
  std::vector<Element> windows = axElements(app, "AXWindows");
  appendFocusedAndMain(app, windows);
  return windows;
}

int setText(const Element& element, const std::string& attribute, const std::string& text) {
  return setValue(element, attribute, makeCfString(text).get());
}

int setTrue(const Element& element, const std::string& attribute) {
  return setValue(element, attribute, kCFBooleanTrue);
}

int setElements(const Element& element, const std::string& attribute,
                const std::vector<Element>& elements) {
  std::vector<const void*> members;
  for (const Element& member : elements) members.push_back(member.get());
  return setValue(element, attribute, makeCfArray(members).get());
}

int performAction(const std::string& action, const Element& element) {
  return AXUIElementPerformAction(element.get(), makeCfString(action).get());
}

void perform(const std::string& action, const Element& element) {
  const int code = performAction(action, element);
  if (code != kAXErrorSuccess) {
    throw ToolError::actionFailed("AX action " + action + " failed: " + std::to_string(code));
  }
}

bool tryAction(const std::string& action, const Element& element) {
  return performAction(action, element) == kAXErrorSuccess;
}

std::optional<std::int32_t> elementPid(const Element& element) {
  pid_t pid = 0;
  if (AXUIElementGetPid(element.get(), &pid) != kAXErrorSuccess) return {};
  return pid;
}

void setMessagingTimeout(double seconds) {
  const auto everything = CfRef<AXUIElementRef>::adopt(AXUIElementCreateSystemWide());
  AXUIElementSetMessagingTimeout(everything.get(), static_cast<float>(seconds));
}

}  // namespace tessarine
