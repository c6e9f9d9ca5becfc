// The one error type: a complete message for people, and the case that decides how the entry
// reports it.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace tessarine {

class ToolError : public std::exception {
 public:
  // `usage` makes the entry print the usage text (exit status 2, or 0 when the message is empty: a
  // request for help); the other cases exit with status 1.
  enum class Case { usage, actionFailed, notFound, timedOut };

  static ToolError usage(std::string message) { return {Case::usage, std::move(message)}; }
  static ToolError actionFailed(std::string message) {
    return {Case::actionFailed, std::move(message)};
  }
  static ToolError notFound(std::string message) { return {Case::notFound, std::move(message)}; }
  static ToolError timedOut(std::string message) { return {Case::timedOut, std::move(message)}; }

  // The error of every expired wait: "timed out after " + the seconds + "s", for example
  // "timed out after 4.0s".
  static ToolError timedOutAfter(double seconds);

  Case errorCase() const { return case_; }
  const std::string& message() const { return message_; }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  ToolError(Case errorCase, std::string message) : case_(errorCase), message_(std::move(message)) {}

  Case case_;
  std::string message_;
};

}  // namespace tessarine
