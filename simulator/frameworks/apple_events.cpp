#include <utility>

#include "CoreServices/CoreServices.h"
#include "simulator/frameworks/desktop_link.h"
#include "simulator/frameworks/faults.h"
#include "simulator/frameworks/object.h"

using simulator::refuse;

OSErr AECreateDesc(DescType type, const void* data, long size, AEDesc* result) {
  if (type != typeApplicationBundleID) refuse(__func__, "only bundle identifiers are modelled");
  *result = {typeNull, nullptr};
  if (const auto error = simulator::frameworkFaults().descriptor_error) {
    return static_cast<OSErr>(error);
  }
  const auto* text = static_cast<const char*>(data);
  simulator::ApplicationAddress address{std::string(text, text + size)};
  *result = {type, simulator::make<AEDataStorage>(std::move(address), __func__)};
  return noErr;
}

OSErr AEDisposeDesc(AEDesc* descriptor) {
  if (descriptor->descriptorType != typeNull) simulator::release(descriptor->dataHandle, __func__);
  *descriptor = {typeNull, nullptr};
  return noErr;
}

OSStatus AEDeterminePermissionToAutomateTarget(const AEAddressDesc* target,
                                               AEEventClass eventClass, AEEventID event,
                                               Boolean askUserIfNeeded) {
  if (askUserIfNeeded) refuse(__func__, "a question to the person is not modelled");
  if (eventClass != typeWildCard || event != typeWildCard) {
    refuse(__func__, "only all events at once are modelled");
  }
  const auto& address =
      simulator::payload<simulator::ApplicationAddress>(target->dataHandle, __func__);
  if (const auto error = simulator::frameworkFaults().automation_error) return error;
  const auto reply = simulator::desktopLink().ask(simulator::AskAutomation{address.bundle});
  return static_cast<OSStatus>(std::get<double>(reply.value));
}
