#include "simulator/frameworks/object.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>

#include "simulator/desktop/text.h"
#include "simulator/frameworks/ledger.h"

namespace simulator {
namespace {

constexpr std::size_t quarantine_size = 4096;

// By the index of the payload.
constexpr const char* kind_names[] = {"string",     "array", "boolean", "number", "URL",
                                      "element",    "point", "size",    "event",  "dispatch group",
                                      "dictionary", "error", "address", "null"};
static_assert(std::size(kind_names) == std::variant_size_v<Payload>);

// Every object that there ever was. Memory is not given back but used again, oldest first, once
// more than `quarantine_size` objects are released: until then a reference to a released object
// is recognised. Never destroyed: threads may outlive the end of main.
struct Store {
  std::mutex mutex;
  std::deque<Object> objects;
  std::deque<Object*> released;
};

Store& store() {
  static Store& only = *new Store;
  return only;
}

std::string describe(const Object& object) {
  std::string text = kind_names[object.payload.index()];
  if (const auto* string = std::get_if<std::u16string>(&object.payload)) {
    text += " \"" + utf8FromUtf16(*string) + "\"";
  } else if (const auto* url = std::get_if<Url>(&object.payload)) {
    text += " <" + url->text + ">";
  } else if (const auto* element = std::get_if<ElementId>(&object.payload)) {
    text += " " + std::to_string(element->number) + " of process " + std::to_string(element->pid);
  } else if (const auto* array = std::get_if<ArrayMembers>(&object.payload)) {
    text += " of " + std::to_string(array->values.size());
  }
  return text + ", made by " + object.creator;
}

// Makes an object for each kind of value.
struct Maker {
  const char* creator;

  CFTypeRef operator()(std::monostate) const { return nullptr; }
  CFTypeRef operator()(const std::string& text) const { return made(utf16FromUtf8(text)); }
  CFTypeRef operator()(const List& list) const {
    ArrayMembers members;
    members.values.reserve(list.size());
    for (const Value& value : list) {
      const bool absent = std::holds_alternative<std::monostate>(value);
      members.values.push_back(absent ? made(std::monostate{}) : toCf(value, creator));
    }
    return made(std::move(members));
  }
  template <class T>
  CFTypeRef operator()(const T& plain) const {
    return made(plain);
  }

 private:
  template <class T>
  CFTypeRef made(T held) const {
    return make<CFTypeRef>(std::move(held), creator);
  }
};

// Reads the value of each kind of object.
struct Reader {
  const char* user;

  Value operator()(const std::u16string& text) const { return utf8FromUtf16(text); }
  Value operator()(const ArrayMembers& members) const {
    List list;
    list.reserve(members.values.size());
    for (CFTypeRef member : members.values) list.push_back(fromCf(member, user));
    return list;
  }
  Value operator()(const InputEvent&) const { refuse(user, "an event is not a value"); }
  Value operator()(const DispatchGroup&) const { refuse(user, "a group is not a value"); }
  Value operator()(const ApplicationAddress&) const { refuse(user, "an address is not a value"); }
  Value operator()(const DictionaryMembers&) const { refuse(user, "a dictionary is not a value"); }
  template <class T>
  Value operator()(const T& plain) const {
    return plain;
  }
};

}  // namespace

void refuse(const char* user, const std::string& problem) {
  std::fprintf(stderr, "%s: %s\n", user, problem.c_str());
  std::abort();
}

void refuseKind(const char* user, const Object& object, std::size_t wanted) {
  refuse(user, "expected " + std::string(kind_names[wanted]) + ", was given " + describe(object));
}

void* poison() {
  return reinterpret_cast<void*>(std::uintptr_t{0x0BAD'0BAD'0BAD'0BAD});
}

Object* makeObject(Payload payload, const char* creator) {
  Store& all = store();
  const std::lock_guard lock(all.mutex);
  Object* made = nullptr;
  if (all.released.size() > quarantine_size) {
    made = all.released.front();
    all.released.pop_front();
  } else {
    made = &all.objects.emplace_back();
  }
  made->payload = std::move(payload);
  made->creator = creator;
  made->accounted = true;
  made->references = 1;
  return made;
}

Object& object(const void* reference, const char* user) {
  if (!reference) refuse(user, "was given a null reference");
  if (reference == poison()) refuse(user, "was given the out-parameter of a call that failed");
  Object& found = *static_cast<Object*>(const_cast<void*>(reference));
  if (found.references <= 0) {
    refuse(user, "was given a released object: " + describe(found));
  }
  return found;
}

void retain(Object& object) {
  if (!object.immortal) ++object.references;
}

void release(const void* reference, const char* user) {
  Object& dying = object(reference, user);
  if (dying.immortal || --dying.references > 0) return;
  if (const auto* array = std::get_if<ArrayMembers>(&dying.payload)) {
    for (CFTypeRef member : array->values) release(member, user);
  }
  if (const auto* dictionary = std::get_if<DictionaryMembers>(&dying.payload)) {
    for (const auto& [key, member] : dictionary->values) release(member, user);
  }
  Store& all = store();
  const std::lock_guard lock(all.mutex);
  all.released.push_back(&dying);
}

CFTypeRef toCf(const Value& value, const char* creator) {
  return std::visit(Maker{creator}, static_cast<const Value::variant&>(value));
}

Value fromCf(CFTypeRef reference, const char* user) {
  return std::visit(Reader{user}, object(reference, user).payload);
}

namespace ledger {
namespace {

template <class Visit>
void visitLive(Visit visit) {
  Store& all = store();
  const std::lock_guard lock(all.mutex);
  for (Object& object : all.objects) {
    if (object.references > 0) visit(object);
  }
}

}  // namespace

long liveReferences() {
  long count = 0;
  visitLive([&](const Object& object) {
    if (object.accounted) count += object.references;
  });
  return count;
}

std::string describeLive() {
  std::string lines;
  visitLive([&](const Object& object) {
    if (!object.accounted) return;
    lines += describe(object) + ": " + std::to_string(object.references) +
             (object.references == 1 ? " reference\n" : " references\n");
  });
  return lines;
}

void abandon() {
  visitLive([](Object& object) { object.accounted = false; });
}

void reset() {
  visitLive([](Object& object) {
    object.references = 0;
    store().released.push_back(&object);
  });
}

}  // namespace ledger
}  // namespace simulator
