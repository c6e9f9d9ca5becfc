// The owning type of reference-counted platform objects. The only place that retains or releases.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace tessarine {

template <class Reference>
class CfRef {
 public:
  CfRef() = default;
  CfRef(const CfRef& other) : CfRef(share(other.reference_)) {}
  CfRef(CfRef&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
  CfRef& operator=(CfRef other) noexcept {
    std::swap(reference_, other.reference_);
    return *this;
  }
  ~CfRef() {
    if (reference_ != nullptr) CFRelease(reference_);
  }

  // Takes over the reference that a Create or Copy function handed out.
  static CfRef adopt(Reference reference) { return CfRef(reference); }

  // Takes a reference of its own to an object that somebody else holds (a Get function's answer).
  static CfRef share(Reference reference) {
    if (reference != nullptr) CFRetain(reference);
    return CfRef(reference);
  }

  Reference get() const { return reference_; }
  explicit operator bool() const { return reference_ != nullptr; }

 private:
  explicit CfRef(Reference reference) : reference_(reference) {}

  Reference reference_ = nullptr;
};

}  // namespace tessarine
