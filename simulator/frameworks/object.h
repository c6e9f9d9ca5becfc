// The objects behind the opaque references of the stand-in frameworks, and their way from and to
// the plain values of the desktop.
#pragma once

#include <atomic>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "CoreFoundation/CoreFoundation.h"
#include "simulator/desktop/request.h"
#include "simulator/desktop/value.h"

namespace simulator {

struct ArrayMembers {
  std::vector<CFTypeRef> values;
};
struct DictionaryMembers {
  std::vector<std::pair<std::u16string, CFTypeRef>> values;  // by their keys
};
struct DispatchGroup {
  long entered = 0;
};
struct ApplicationAddress {
  std::string bundle;  // the application's identifier
};
using InputEvent = std::variant<KeyEvent, MouseEvent>;
// The last one is the null that stands for the absence of a value among others.
using Payload = std::variant<std::u16string, ArrayMembers, bool, double, Url, ElementId, Point,
                             Size, InputEvent, DispatchGroup, DictionaryMembers, AttributeError,
                             ApplicationAddress, std::monostate>;

struct Object {
  std::atomic<long> references{0};
  const char* creator = nullptr;  // the function that made it
  bool accounted = true;
  bool immortal = false;  // a constant: retaining and releasing it changes nothing
  Payload payload;
};

// A new object with one reference. `creator` must live as long as the program.
Object* makeObject(Payload payload, const char* creator);

// The living object behind a reference; `user` is the function that was given the reference.
Object& object(const void* reference, const char* user);

void retain(Object& object);
void release(const void* reference, const char* user);

// Ends the program: "`user`: `problem`".
[[noreturn]] void refuse(const char* user, const std::string& problem);
[[noreturn]] void refuseKind(const char* user, const Object& object, std::size_t wanted);

// What an out-parameter holds after a call that failed.
void* poison();

template <class T>
T& payload(const void* reference, const char* user) {
  Object& found = object(reference, user);
  T* held = std::get_if<T>(&found.payload);
  if (!held) refuseKind(user, found, Payload(T{}).index());
  return *held;
}

template <class Reference, class T>
Reference make(T held, const char* creator) {
  return reinterpret_cast<Reference>(makeObject(Payload(std::move(held)), creator));
}

// A new reference to an object with that value, nothing for the absence of a value; among the
// members of a list that is a null object.
CFTypeRef toCf(const Value& value, const char* creator);
// The value behind a reference.
Value fromCf(CFTypeRef reference, const char* user);

}  // namespace simulator
