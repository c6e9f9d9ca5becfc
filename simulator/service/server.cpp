#include "simulator/service/server.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <thread>

#include "simulator/service/wire_address.h"

namespace simulator {
namespace {

constexpr int backlog = 16;
constexpr double longest_wait_seconds = 1;

WireError failed(const std::string& what, const std::string& path) {
  return WireError(what + " " + path + ": " + std::strerror(errno));
}

// Makes room for a socket at `path`.
void removeStaleSocket(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return;
  if (!S_ISSOCK(status.st_mode)) throw WireError("not a socket: " + path);
  const int answering = connectTo(path);
  if (answering >= 0) {
    close(answering);
    throw WireError("a desktop already answers at " + path);
  }
  if (unlink(path.c_str()) != 0) throw failed("cannot replace", path);
}

int listenAt(const std::string& path) {
  const sockaddr_un address = socketAddress(path);
  removeStaleSocket(path);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  if (listener < 0) throw failed("cannot listen at", path);
  fcntl(listener, F_SETFD, FD_CLOEXEC);
  fcntl(listener, F_SETFL, O_NONBLOCK);
  if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener, backlog) != 0) {
    const WireError error = failed("cannot listen at", path);
    close(listener);
    throw error;
  }
  return listener;
}

}  // namespace

Server::Server(Desktop& desktop, CallLog& calls, std::string path, State state)
    : desktop_(desktop),
      calls_(calls),
      path_(std::move(path)),
      state_(std::move(state)),
      listener_(listenAt(path_)),
      started_(std::chrono::steady_clock::now()) {}

Server::~Server() {
  for (const auto& [socket, client] : clients_) close(socket);
  close(listener_);
  unlink(path_.c_str());
}

Seconds Server::wallTime() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - started_).count();
}

// Until the next thing happens on the desktop. `poll` knows whole milliseconds only: the last
// fraction of one is slept through here, so that no request takes longer than its price.
int Server::waitMilliseconds() const {
  Seconds next = wallTime() + longest_wait_seconds;
  if (const auto deadline = desktop_.nextDeadline()) next = std::min(next, *deadline);
  for (const Pending& pending : pending_) next = std::min(next, pending.due);
  const Seconds left = next - wallTime();
  if (left <= 0) return 0;
  if (left < 0.001) {
    std::this_thread::sleep_for(std::chrono::duration<double>(left));
    return 0;
  }
  return static_cast<int>(left * 1000);
}

void Server::serveUntil(int stop) {
  while (true) {
    std::vector<pollfd> watched = {{stop, POLLIN, 0}, {listener_, POLLIN, 0}};
    for (const auto& [socket, client] : clients_) {
      const int events = client.unsent.empty() ? POLLIN : POLLIN | POLLOUT;
      watched.push_back({socket, static_cast<short>(events), 0});
    }
    if (poll(watched.data(), static_cast<nfds_t>(watched.size()), waitMilliseconds()) < 0) {
      if (errno != EINTR) throw failed("cannot wait for programs at", path_);
      continue;
    }
    catchUp();
    if (watched[0].revents) return;
    if (watched[1].revents) accept();
    for (std::size_t i = 2; i < watched.size(); ++i) {
      if (watched[i].revents & POLLOUT) flush(watched[i].fd);
      if (watched[i].revents & ~POLLOUT) receive(watched[i].fd);
    }
    catchUp();
  }
}

void Server::moveOn(Seconds seconds) {
  const Seconds time = desktop_.now() + seconds;
  answerDue(time);
  desktop_.advanceTo(time);
}

void Server::accept() {
  const int socket = ::accept(listener_, nullptr, nullptr);
  if (socket < 0) return;
  fcntl(socket, F_SETFD, FD_CLOEXEC);
  fcntl(socket, F_SETFL, O_NONBLOCK);
  sparePipeSignal(socket);
  clients_[socket];
}

void Server::catchUp() {
  const Seconds time = wallTime();
  answerDue(time);
  desktop_.advanceTo(time);
  finishPrograms();
}

void Server::answerDue(Seconds time) {
  while (true) {
    const auto next = std::ranges::min_element(pending_, {}, &Pending::due);
    if (next == pending_.end() || next->due > time) return;
    const Pending pending = *next;
    pending_.erase(next);
    desktop_.advanceTo(pending.due);
    const Reply reply = desktop_.answer(pending.request);
    if (pending.client < 0) continue;
    clients_.at(pending.client).asking = false;
    send(pending.client, encode(reply));
    readMessages(pending.client);
  }
}

void Server::finishPrograms() {
  std::vector<std::pair<int, ProgramResult>> ended;
  for (auto& [socket, client] : clients_) {
    if (!client.program) continue;
    if (auto result = desktop_.programResult(*client.program)) {
      client.program.reset();
      ended.emplace_back(socket, std::move(*result));
    }
  }
  for (const auto& [socket, result] : ended) {
    send(socket, encode(result));
    readMessages(socket);
  }
}

void Server::receive(int socket) {
  if (!clients_.contains(socket)) return;
  char chunk[65536];
  const ssize_t count = read(socket, chunk, sizeof chunk);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (count <= 0) return drop(socket);
  clients_[socket].received.append(chunk, static_cast<std::size_t>(count));
  readMessages(socket);
}

// A client that says something unintelligible is let go.
void Server::readMessages(int socket) {
  try {
    while (clients_.contains(socket)) {
      Client& client = clients_[socket];
      if (client.asking || client.program) return;
      const auto message = unpack(client.received);
      if (!message) return;
      take(socket, decodeMessage(*message));
    }
  } catch (const WireError&) {
    drop(socket);
  }
}

void Server::take(int socket, const Message& message) {
  if (const auto* request = std::get_if<Request>(&message)) {
    clients_[socket].asking = true;
    pending_.push_back({desktop_.now() + desktop_.price(*request), socket, *request});
  } else if (const auto* start = std::get_if<StartProgram>(&message)) {
    if (desktop_.hasProgram(start->path)) {
      clients_[socket].program = desktop_.startProgram(start->path, start->arguments);
    } else {
      send(socket, encode(ProgramResult{127, "", start->path + ": not on this desktop\n"}));
    }
  } else if (const auto* begin = std::get_if<BeginCall>(&message)) {
    beginCall(socket, *begin);
  } else if (const auto* end = std::get_if<EndCall>(&message)) {
    endCall(socket, *end);
  } else {
    send(socket, state_());
  }
}

void Server::beginCall(int socket, const BeginCall& begin) {
  if (clients_[socket].call) throw WireError("a call within a call");
  clients_[socket].call = calls_.begin(begin.arguments, begin.folder, desktop_.now());
  send(socket, nullptr);
}

void Server::endCall(int socket, const EndCall& end) {
  if (!clients_[socket].call) throw WireError("the end of no call");
  calls_.end(*clients_[socket].call, end.status, end.output, desktop_.now());
  clients_[socket].call.reset();
  send(socket, nullptr);
}

void Server::send(int socket, const nlohmann::json& answer) {
  clients_[socket].unsent += pack(answer);
  flush(socket);
}

void Server::flush(int socket) {
  if (!clients_.contains(socket)) return;
  std::string& unsent = clients_[socket].unsent;
  while (!unsent.empty()) {
    const ssize_t count = ::send(socket, unsent.data(), unsent.size(), send_flags);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) return;
    if (count <= 0) return drop(socket);
    unsent.erase(0, static_cast<std::size_t>(count));
  }
}

void Server::drop(int socket) {
  const Client& client = clients_.at(socket);
  if (client.program) desktop_.terminateProgram(*client.program);
  if (client.call) calls_.lose(*client.call, desktop_.now());
  for (Pending& pending : pending_) {
    if (pending.client == socket) pending.client = -1;
  }
  close(socket);
  clients_.erase(socket);
}

}  // namespace simulator
