#include "ApplicationServices/ApplicationServices.h"

#include <atomic>
#include <limits>
#include <optional>

#include "simulator/desktop/text.h"
#include "simulator/frameworks/desktop_link.h"
#include "simulator/frameworks/faults.h"
#include "simulator/frameworks/messaging_timeout.h"
#include "simulator/frameworks/object.h"

using simulator::desktopLink;
using simulator::ElementId;
using simulator::Reply;
using simulator::Value;

namespace {

const ElementId& elementOf(AXUIElementRef element, const char* user) {
  return simulator::payload<ElementId>(element, user);
}

std::string textOf(CFStringRef text, const char* user) {
  return simulator::utf8FromUtf16(simulator::payload<std::u16string>(text, user));
}

// The element that stands for no process.
constexpr ElementId system_wide{};

// Of every request of this process; 0: the default.
// Not modelled: a time of its own for anything but reading an attribute.
std::atomic<float> messaging_timeout = 0;

std::optional<simulator::Seconds> patience() {
  const float seconds = messaging_timeout;
  return seconds > 0 ? std::optional<simulator::Seconds>(seconds) : std::nullopt;
}

// Hands out the answer's value with one reference, or nothing that could be used.
template <class Reference>
AXError handOut(const Reply& reply, Reference* out, const char* creator) {
  if (!out) simulator::refuse(creator, "was given no out-parameter");
  *out = static_cast<Reference>(reply.error ? simulator::poison()
                                            : simulator::toCf(reply.value, creator));
  return static_cast<AXError>(reply.error);
}

}  // namespace

float simulator::messagingTimeout() {
  return messaging_timeout;
}

void simulator::setMessagingTimeout(float seconds) {
  messaging_timeout = seconds;
}

Boolean AXIsProcessTrusted() {
  return std::get<bool>(desktopLink().ask(simulator::AskTrust{}).value);
}

AXUIElementRef AXUIElementCreateSystemWide() {
  return simulator::make<AXUIElementRef>(system_wide, __func__);
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds) {
  if (elementOf(element, __func__) != system_wide) {
    simulator::refuse(__func__, "only the system-wide element is modelled");
  }
  if (seconds < 0) return static_cast<AXError>(simulator::ax::illegalArgument);
  if (const auto error = simulator::frameworkFaults().messaging_timeout_error) {
    return static_cast<AXError>(error);
  }
  messaging_timeout = seconds;
  return kAXErrorSuccess;
}

AXUIElementRef AXUIElementCreateApplication(pid_t pid) {
  return simulator::make<AXUIElementRef>(ElementId{pid, 0}, __func__);
}

// Every element carries it: nobody is asked.
AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid) {
  if (!pid) simulator::refuse(__func__, "was given no out-parameter");
  *pid = elementOf(element, __func__).pid;
  return kAXErrorSuccess;
}

AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                      CFTypeRef* value) {
  return handOut(desktopLink().ask(simulator::CopyAttribute{
                     elementOf(element, __func__), textOf(attribute, __func__), patience()}),
                 value, __func__);
}

AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options,
                                               CFArrayRef* values) {
  if (options != 0) simulator::refuse(__func__, "no option is modelled");
  simulator::CopyAttributes request{elementOf(element, __func__), {}, patience()};
  for (CFTypeRef name : simulator::payload<simulator::ArrayMembers>(attributes, __func__).values) {
    request.names.push_back(textOf(static_cast<CFStringRef>(name), __func__));
  }
  return handOut(desktopLink().ask(request), values, __func__);
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                     CFTypeRef value) {
  const Reply reply = desktopLink().ask(
      simulator::SetAttribute{elementOf(element, __func__), textOf(attribute, __func__),
                              simulator::fromCf(value, __func__)});
  return static_cast<AXError>(reply.error);
}

AXError AXUIElementCopyActionNames(AXUIElementRef element, CFArrayRef* names) {
  return handOut(desktopLink().ask(simulator::CopyActionNames{elementOf(element, __func__)}), names,
                 __func__);
}

AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action) {
  const Reply reply = desktopLink().ask(
      simulator::PerformAction{elementOf(element, __func__), textOf(action, __func__)});
  return static_cast<AXError>(reply.error);
}

AXValueType AXValueGetType(AXValueRef value) {
  const Value held = simulator::fromCf(value, __func__);
  if (std::holds_alternative<simulator::Point>(held)) return kAXValueTypeCGPoint;
  if (std::holds_alternative<simulator::Size>(held)) return kAXValueTypeCGSize;
  simulator::payload<simulator::AttributeError>(value,
                                                __func__);  // names what it was given instead
  return kAXValueTypeAXError;
}

Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* out) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  const Value held = simulator::fromCf(value, __func__);
  const auto* point = std::get_if<simulator::Point>(&held);
  const auto* size = std::get_if<simulator::Size>(&held);
  if (!point && !size && !std::holds_alternative<simulator::AttributeError>(held)) {
    simulator::payload<simulator::Point>(value, __func__);  // names what it was given instead
  }
  if (type == kAXValueTypeCGPoint) {
    *static_cast<CGPoint*>(out) = point ? CGPoint{point->x, point->y} : CGPoint{nan, nan};
    return point != nullptr;
  }
  if (type == kAXValueTypeCGSize) {
    *static_cast<CGSize*>(out) = size ? CGSize{size->width, size->height} : CGSize{nan, nan};
    return size != nullptr;
  }
  simulator::refuse(__func__, "only points and sizes are modelled");
}
