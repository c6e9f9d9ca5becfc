// What a program and a desktop service say to each other over a Unix socket: CBOR messages, each
// after its length in four bytes, the highest first. A program sends one message and reads one
// answer; what the answer holds follows from the message.
//
// Everything that does not have the expected form is refused with a WireError.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "simulator/desktop/request.h"

namespace simulator {

struct WireError : std::runtime_error {
  using runtime_error::runtime_error;
};

// Answered with the program's result, once it has ended.
struct StartProgram {
  std::string path;
  std::vector<std::string> arguments;
};

// Answered with the state of the service, a text.
struct AskState {};

// A call of the tool begins. Answered with null. The connection is the call's until EndCall; when
// it closes before, the call is gone without a word.
struct BeginCall {
  std::string folder;                  // the current one
  std::vector<std::string> arguments;  // without the program's own name
};

// The call of this connection is about to end. Answered with null.
struct EndCall {
  int status = 0;
  std::string output;  // what it printed on standard output
};

using Message = std::variant<Request, StartProgram, AskState, BeginCall, EndCall>;

nlohmann::json encode(const Message& message);
nlohmann::json encode(const Reply& reply);
nlohmann::json encode(const ProgramResult& result);

Message decodeMessage(const nlohmann::json& json);
Reply decodeReply(const nlohmann::json& json);
ProgramResult decodeProgramResult(const nlohmann::json& json);

// The bytes of one message, and the first whole message in the bytes received so far, which is
// taken off them; absent as long as it is not complete.
std::string pack(const nlohmann::json& json);
std::optional<nlohmann::json> unpack(std::string& received);

}  // namespace simulator
