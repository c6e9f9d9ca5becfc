// What is to happen whichever way a scope is left.
#pragma once

#include <utility>

namespace tessarine {

// Calls a function when it goes out of scope, whether by return or by exception.
template <class Function>
class Finally {
 public:
  explicit Finally(Function function) : function_(std::move(function)) {}
  ~Finally() { function_(); }
  Finally(const Finally&) = delete;
  Finally& operator=(const Finally&) = delete;

 private:
  Function function_;
};

}  // namespace tessarine
