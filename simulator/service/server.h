// A desktop that other processes talk to, in real time. One thread; the desktop's time is the time
// since the server was made.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/desktop.h"
#include "simulator/judge/call_log.h"
#include "simulator/service/wire.h"

namespace simulator {

class Server {
 public:
  using State = std::function<std::string()>;

  // Listens at `path`, in the place of a service that is gone. `calls` receives the calls of the
  // tool; `state` is what AskState is answered with. Throws a WireError with the reason when it
  // cannot listen there.
  Server(Desktop& desktop, CallLog& calls, std::string path, State state);
  // Removes the socket.
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  // Serves until `stop` can be read from. Each request is answered when its price has passed, with
  // what the desktop is like then; the requests of one client in the order in which they came,
  // those of different clients without waiting for each other. A client that goes away ends its
  // program; a request that it made is still carried out.
  void serveUntil(int stop);

  // Moves the desktop's time on at once: what is under way lands. Nobody is served afterwards.
  void moveOn(Seconds seconds);

 private:
  struct Client {
    std::string received;
    std::string unsent;
    std::optional<ProgramId> program;
    std::optional<std::size_t> call;
    bool asking = false;  // one of the requests below is its own
  };
  struct Pending {
    Seconds due;
    int client;  // the socket, -1 once the client went away
    Request request;
  };

  Seconds wallTime() const;
  int waitMilliseconds() const;
  void accept();
  void catchUp();
  void answerDue(Seconds time);
  void finishPrograms();
  void receive(int socket);
  void readMessages(int socket);
  void take(int socket, const Message& message);
  void beginCall(int socket, const BeginCall& begin);
  void endCall(int socket, const EndCall& end);
  void send(int socket, const nlohmann::json& answer);
  void flush(int socket);
  void drop(int socket);

  Desktop& desktop_;
  CallLog& calls_;
  std::string path_;
  State state_;
  int listener_;
  std::chrono::steady_clock::time_point started_;
  std::map<int, Client> clients_;  // by socket
  std::vector<Pending> pending_;   // in the order of arrival
};

}  // namespace simulator
