#include "CoreFoundation/CoreFoundation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "simulator/frameworks/object.h"

using simulator::ArrayMembers;
using simulator::Object;
using simulator::Payload;
using simulator::refuse;

struct CFArrayCallBacks {
  CFIndex version;
};

namespace {

const Object* makeTruth() {
  auto* truth = new Object;
  truth->references = 1;
  truth->creator = "the framework";
  truth->immortal = true;
  truth->payload = true;
  return truth;
}

// Kinds are numbered by their payload; points, sizes and errors are all AXValues.
CFTypeID typeId(const Payload& payload) {
  const bool other = std::holds_alternative<simulator::Size>(payload) ||
                     std::holds_alternative<simulator::AttributeError>(payload);
  return (other ? Payload(simulator::Point{}) : payload).index() + 1;
}

bool equal(CFTypeRef one, CFTypeRef other, const char* user) {
  const Object& left = simulator::object(one, user);
  const Object& right = simulator::object(other, user);
  if (&left == &right) return true;
  if (left.payload.index() != right.payload.index()) return false;
  if (const auto* members = std::get_if<ArrayMembers>(&left.payload)) {
    return std::ranges::equal(members->values, std::get<ArrayMembers>(right.payload).values,
                              [&](CFTypeRef a, CFTypeRef b) { return equal(a, b, user); });
  }
  return simulator::fromCf(one, user) == simulator::fromCf(other, user);
}

}  // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFArrayCallBacks kCFTypeArrayCallBacks{0};
const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(makeTruth());

CFTypeRef CFRetain(CFTypeRef object) {
  simulator::retain(simulator::object(object, __func__));
  return object;
}

void CFRelease(CFTypeRef object) {
  simulator::release(object, __func__);
}

Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
  return equal(one, other, __func__);
}

CFTypeID CFGetTypeID(CFTypeRef object) {
  return typeId(simulator::object(object, __func__).payload);
}

// The type identifiers of every kind, those of accessibility objects included.
CFTypeID CFStringGetTypeID() {
  return typeId(std::u16string());
}
CFTypeID CFArrayGetTypeID() {
  return typeId(ArrayMembers{});
}
CFTypeID CFDictionaryGetTypeID() {
  return typeId(simulator::DictionaryMembers{});
}
CFTypeID CFNumberGetTypeID() {
  return typeId(0.0);
}
CFTypeID CFBooleanGetTypeID() {
  return typeId(true);
}
CFTypeID CFNullGetTypeID() {
  return typeId(std::monostate{});
}
CFTypeID CFURLGetTypeID() {
  return typeId(simulator::Url{});
}
extern "C" CFTypeID AXUIElementGetTypeID() {
  return typeId(simulator::ElementId{});
}
extern "C" CFTypeID AXValueGetTypeID() {
  return typeId(simulator::Point{});
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters,
                                         CFIndex count) {
  if (allocator) refuse(__func__, "only the default allocator is modelled");
  if (count < 0 || (count > 0 && !characters)) refuse(__func__, "was given no characters");
  return simulator::make<CFStringRef>(std::u16string(characters, characters + count), __func__);
}

CFIndex CFStringGetLength(CFStringRef string) {
  return static_cast<CFIndex>(simulator::payload<std::u16string>(string, __func__).size());
}

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
  const auto& text = simulator::payload<std::u16string>(string, __func__);
  const auto size = static_cast<CFIndex>(text.size());
  if (range.location < 0 || range.length < 0 || range.location > size - range.length) {
    refuse(__func__, "the range ends outside the string");
  }
  std::copy_n(text.begin() + range.location, range.length, buffer);
}

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
  if (allocator) refuse(__func__, "only the default allocator is modelled");
  if (callBacks != &kCFTypeArrayCallBacks) refuse(__func__, "other callbacks are not modelled");
  ArrayMembers members;
  members.values.assign(values, values + count);
  for (CFTypeRef member : members.values) {
    simulator::retain(simulator::object(member, __func__));
  }
  return simulator::make<CFArrayRef>(std::move(members), __func__);
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(simulator::payload<ArrayMembers>(array, __func__).values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  const auto& values = simulator::payload<ArrayMembers>(array, __func__).values;
  if (index < 0 || static_cast<std::size_t>(index) >= values.size()) {
    refuse(__func__,
           "index " + std::to_string(index) + " of an array of " + std::to_string(values.size()));
  }
  return values[static_cast<std::size_t>(index)];
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  const auto& name = simulator::payload<std::u16string>(key, __func__);
  for (const auto& [held, value] :
       simulator::payload<simulator::DictionaryMembers>(dictionary, __func__).values) {
    if (held == name) return value;
  }
  return nullptr;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* out) {
  if (type != kCFNumberSInt32Type) refuse(__func__, "only 32-bit integers are modelled");
  const double held = simulator::payload<double>(number, __func__);
  const double kept = std::clamp<double>(std::trunc(held), INT32_MIN, INT32_MAX);
  *static_cast<std::int32_t*>(out) = static_cast<std::int32_t>(kept);
  return kept == held;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  return simulator::payload<bool>(boolean, __func__);
}
