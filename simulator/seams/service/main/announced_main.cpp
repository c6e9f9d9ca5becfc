// The tool's process in the world of a desktop service: the service is told when a call begins, and
// with what status and output it ends. The product does not know: its `main` is compiled as
// `product_main`. Without a service nothing but that runs, and with one that does not answer, or no
// longer, nothing at all.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <streambuf>
#include <string>
#include <system_error>
#include <thread>

#include "platform/standard_streams.h"
#include "simulator/service/client.h"

int product_main(int argc, char** argv);

namespace simulator {
namespace {

// Hands everything on and keeps what was accepted.
class Tee : public std::streambuf {
 public:
  explicit Tee(std::streambuf& next) : next_(next) {}
  const std::string& text() const { return text_; }

 protected:
  int_type overflow(int_type byte) override {
    if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
    const char character = traits_type::to_char_type(byte);
    return xsputn(&character, 1) == 1 ? byte : traits_type::eof();
  }
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    const std::streamsize accepted = next_.sputn(bytes, count);
    text_.append(bytes, static_cast<std::size_t>(accepted));
    return accepted;
  }
  int sync() override { return next_.pubsync(); }

 private:
  std::streambuf& next_;
  std::string text_;
};

// This process's call, from its begin to its end.
class Announcement {
 public:
  // Throws a WireError when no service answers at `path`.
  Announcement(const std::string& path, int argc, char** argv)
      : connection_(path), standard_(std::cout.rdbuf()), tee_(*standard_) {
    std::error_code unknown;
    BeginCall begin{std::filesystem::current_path(unknown), {}};
    for (int i = 1; i < argc; ++i) begin.arguments.emplace_back(argv[i]);
    connection_.exchange(begin);
    std::cout.rdbuf(&tee_);
  }
  Announcement(const Announcement&) = delete;
  Announcement& operator=(const Announcement&) = delete;

  void end(int status) { connection_.exchange(EndCall{status, tee_.text()}); }

  // Ends the process as soon as the desktop is gone, even while the product sleeps.
  void watch() const {
    std::thread([this] {
      connection_.waitForTheEnd();
      endWithoutDesktop(lost());
    }).detach();
  }

 private:
  Connection connection_;
  std::streambuf* standard_;
  Tee tee_;
};

Announcement* announcement = nullptr;

void announce(int argc, char** argv) {
  const char* path = std::getenv(desktop_variable);
  if (!path) return;
  try {
    // Never destroyed: its watch outlives the end of main.
    announcement = new Announcement(path, argc, argv);
    announcement->watch();
  } catch (const WireError& error) {
    endWithoutDesktop(error);
  }
}

void announceEnd(int status) {
  if (!announcement) return;
  try {
    announcement->end(status);
  } catch (const WireError& error) {
    endWithoutDesktop(error);
  }
}

}  // namespace
}  // namespace simulator

// The product ends so after a failure. Defined here, it is this function instead of the system's.
extern "C" void _Exit(int status) {
  simulator::announceEnd(status);
  _exit(status);
}

int main(int argc, char** argv) {
  tessarine::openMissingStandardStreams();  // before the connection gets one of their numbers
  simulator::announce(argc, argv);
  const int status = product_main(argc, argv);
  simulator::announceEnd(status);
  return status;
}
