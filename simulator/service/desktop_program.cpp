// Stands in for a program of the simulated desktop: whatever name it is called by, it has the
// desktop run the program of that name and behaves as that one did.
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "simulator/service/client.h"

namespace {

constexpr int status_not_run = 127;

// The system's programs are asked for by their places; others are known by their names.
std::string programPath(const std::string& called) {
  const std::string name = called.substr(called.rfind('/') + 1);
  if (name == "ps") return "/bin/ps";
  if (name == "osascript") return "/usr/bin/osascript";
  if (name == "screencapture") return "/usr/sbin/screencapture";
  return name;
}

int complain(const std::string& program, const std::string& problem) {
  std::fprintf(stderr, "%s: %s\n", program.c_str(), problem.c_str());
  return status_not_run;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string program = programPath(argc > 0 ? argv[0] : "");
  const char* desktop = std::getenv(simulator::desktop_variable);
  if (!desktop) {
    return complain(program, std::string(simulator::desktop_variable) + " names no desktop");
  }
  try {
    simulator::StartProgram start{program, {}};
    for (int i = 1; i < argc; ++i) start.arguments.emplace_back(argv[i]);
    const simulator::ProgramResult result =
        simulator::decodeProgramResult(simulator::Connection(desktop).exchange(start));
    std::fwrite(result.standardOutput.data(), 1, result.standardOutput.size(), stdout);
    std::fwrite(result.standardError.data(), 1, result.standardError.size(), stderr);
    return result.exitStatus;
  } catch (const simulator::WireError& error) {
    return complain(program, error.what());
  }
}
