// Comparing declarations of platform functions with what this program was written against.
#pragma once

#include <type_traits>

namespace tessarine {

// A function's type without `noexcept`, which some declarations carry and callers do not rely on.
template <class Function>
struct Signature;
template <class Result, class... Parameters>
struct Signature<Result(Parameters...)> {
  using Type = Result(Parameters...);
};
template <class Result, class... Parameters>
struct Signature<Result(Parameters...) noexcept> {
  using Type = Result(Parameters...);
};

template <class Function, class Expected>
inline constexpr bool hasSignature = std::is_same_v<typename Signature<Function>::Type, Expected>;

}  // namespace tessarine
