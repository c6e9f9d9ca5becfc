// The desktop as a service: its messages, its server, and the world of a program that talks to it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <limits>
#include <nlohmann/json.hpp>
#include <thread>

#include "ApplicationServices/ApplicationServices.h"
#include "dispatch/dispatch.h"
#include "platform/workspace.h"
#include "simulator/frameworks/desktop_link.h"
#include "simulator/service/client.h"
#include "simulator/service/server.h"
#include "simulator/service/wire.h"
#include "simulator/service/wire_address.h"

namespace simulator {
namespace {

using nlohmann::json;

constexpr Pid browser = 501;
constexpr Pid silent = 502;

// Over the wire and back.
json through(const json& record) {
  std::string bytes = pack(record);
  const auto arrived = unpack(bytes);
  EXPECT_EQ(bytes, "");
  return arrived.value_or(json());
}

template <class T>
T sent(const T& request) {
  return std::get<T>(std::get<Request>(decodeMessage(through(encode(Message(Request(request)))))));
}

Value sentValue(const Value& value) {
  return decodeReply(through(encode(Reply{ax::success, value}))).value;
}

TEST(Wire, AccessibilityRequestsArriveAsTheyWereSent) {
  const ElementId element{browser, std::numeric_limits<std::uint64_t>::max()};
  const auto copy = sent(CopyAttribute{element, "AXRole"});
  EXPECT_EQ(copy.element, element);
  EXPECT_EQ(copy.name, "AXRole");
  const auto set = sent(SetAttribute{element, "AXValue", std::string("打开")});
  EXPECT_EQ(set.element, element);
  EXPECT_EQ(set.name, "AXValue");
  EXPECT_EQ(set.value, Value(std::string("打开")));
  EXPECT_EQ(sent(CopyActionNames{element}).element, element);
  const auto perform = sent(PerformAction{element, "AXPress"});
  EXPECT_EQ(perform.element, element);
  EXPECT_EQ(perform.name, "AXPress");
  EXPECT_EQ(sent(CopyAttribute{element, "AXRole"}).patience, std::nullopt);
  EXPECT_EQ(sent(CopyAttribute{element, "AXRole", 0.5}).patience, 0.5);
  const auto several = sent(CopyAttributes{element, {"AXRole", "AXTitle"}, 0.5});
  EXPECT_EQ(several.element, element);
  EXPECT_EQ(several.names, (std::vector<std::string>{"AXRole", "AXTitle"}));
  EXPECT_EQ(several.patience, 0.5);
  const Value answer = List{std::string("打开"), AttributeError{ax::noValue}, std::monostate{}};
  EXPECT_EQ(sentValue(answer), answer);
}

TEST(Wire, EventsArriveAsTheyWereSent) {
  const std::u16string text = {u'a', char16_t{0xD800}, u'\0'};
  const auto key = sent(PostEvent{KeyEvent{36, false, 0x120000, text}, browser});
  const auto& keyEvent = std::get<KeyEvent>(key.event);
  EXPECT_EQ(key.target, browser);
  EXPECT_EQ(keyEvent.keyCode, 36);
  EXPECT_FALSE(keyEvent.down);
  EXPECT_EQ(keyEvent.flags, 0x120000u);
  EXPECT_EQ(keyEvent.text, text);
  const auto bare = sent(PostEvent{KeyEvent{}, {}});
  EXPECT_EQ(bare.target, std::nullopt);
  EXPECT_EQ(std::get<KeyEvent>(bare.event).text, std::nullopt);
  const auto mouse = sent(PostEvent{MouseEvent{2, {-1.5, 1e9}, 2}, {}});
  const auto& mouseEvent = std::get<MouseEvent>(mouse.event);
  EXPECT_EQ(mouseEvent.type, 2u);
  EXPECT_EQ(mouseEvent.at, (Point{-1.5, 1e9}));
  EXPECT_EQ(mouseEvent.clickState, 2);
}

TEST(Wire, WorkspaceRequestsArriveAsTheyWereSent) {
  sent(AskFrontmost{});
  sent(AskScreens{});
  sent(AskWindows{});
  EXPECT_EQ(sent(AskPresses{25}).type, 25U);
  sent(AskTrust{});
  sent(AskScreenCapture{});
  EXPECT_EQ(sent(AskAutomation{"com.apple.finder"}).bundle, "com.apple.finder");
  EXPECT_EQ(sent(AskRunning{-7}).pid, -7);
  EXPECT_EQ(sent(Activate{browser}).pid, browser);
  EXPECT_EQ(sent(AskDisplayName{"/tmp/\xFF b"}).path, "/tmp/\xFF b");
}

TEST(Wire, ProgramsAndTheirResultsArriveAsTheyWereSent) {
  const StartProgram start{"/bin/ps", {"-p", "", "\xFE"}};
  const auto arrived = std::get<StartProgram>(decodeMessage(through(encode(Message(start)))));
  EXPECT_EQ(arrived.path, start.path);
  EXPECT_EQ(arrived.arguments, start.arguments);
  EXPECT_TRUE(std::holds_alternative<AskState>(decodeMessage(through(encode(AskState{})))));
  const ProgramResult result =
      decodeProgramResult(through(encode(ProgramResult{3, std::string("a\0b", 3), "\xFF"})));
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_EQ(result.standardOutput, std::string("a\0b", 3));
  EXPECT_EQ(result.standardError, "\xFF");
}

TEST(Wire, CallsArriveAsTheyWereSent) {
  const BeginCall begin{"/tmp/\xFE", {"close", "", "--pid"}};
  const auto begun = std::get<BeginCall>(decodeMessage(through(encode(Message(begin)))));
  EXPECT_EQ(begun.folder, begin.folder);
  EXPECT_EQ(begun.arguments, begin.arguments);
  const EndCall end{-1, std::string("{\"ok\"\0\xFF", 7)};
  const auto ended = std::get<EndCall>(decodeMessage(through(encode(Message(end)))));
  EXPECT_EQ(ended.status, end.status);
  EXPECT_EQ(ended.output, end.output);
}

TEST(Wire, EveryKindOfValueArrivesAsItWasSent) {
  const double infinity = std::numeric_limits<double>::infinity();
  const List values = {Value(),
                       std::string("point"),
                       true,
                       0.1,
                       -3.0,
                       Point{1.5, -infinity},
                       Size{0, -2},
                       ElementId{browser, 7},
                       Url{"file:///a%20b"},
                       List{},
                       List{std::string("url"), List{false}}};
  EXPECT_EQ(sentValue(values), Value(values));
  const Value nan = sentValue(Point{std::nan(""), 0});
  EXPECT_TRUE(std::isnan(std::get<Point>(nan).x));
  const Reply failed = decodeReply(through(encode(Reply{ax::invalidElement, {}})));
  EXPECT_EQ(failed.error, ax::invalidElement);
}

TEST(Wire, AMessageIsTakenOnlyWhenItIsWhole) {
  const std::string two = pack("first") + pack("second");
  std::string received;
  std::vector<json> messages;
  for (const char byte : two) {
    received += byte;
    while (auto message = unpack(received)) messages.push_back(*message);
  }
  EXPECT_EQ(messages, (std::vector<json>{"first", "second"}));
}

std::string refusal(const json& record) {
  try {
    decodeMessage(record);
  } catch (const WireError& error) {
    return error.what();
  }
  return "accepted";
}

TEST(Wire, WhatHasNotTheExpectedFormIsRefused) {
  EXPECT_EQ(refusal(7), "not a record: 7");
  EXPECT_EQ(refusal({"dance", 1, 2}), "unknown message: dance");
  EXPECT_EQ(refusal({"copy", 501, 0}), R"(a member is missing: ["copy",501,0])");
  EXPECT_EQ(refusal({"copy", 501, 0, "AXRole", nullptr, 1}),
            R"(a member too many: ["copy",501,0,"AXRole",null,1])");
  EXPECT_EQ(refusal({"copy", 501.5, 0, "AXRole"}),
            R"(a member has the wrong type: ["copy",501.5,0,"AXRole"])");
  EXPECT_EQ(refusal({"copy", 5000000000, 0, "AXRole"}),
            R"(a member has the wrong type: ["copy",5000000000,0,"AXRole"])");
  EXPECT_EQ(refusal({"set", 501, 0, "AXValue", {"colour", 1, 2}}), "unknown kind of value: colour");
  EXPECT_EQ(refusal(json::array({"begin call"})), R"(a member is missing: ["begin call"])");
  EXPECT_EQ(refusal({"begin call", "/", "close", 1}),
            R"(a member has the wrong type: ["begin call","/","close",1])");
  EXPECT_EQ(refusal({"end call", 0}), R"(a member is missing: ["end call",0])");
  EXPECT_EQ(refusal({"end call", "0", ""}), R"(a member has the wrong type: ["end call","0",""])");
  EXPECT_EQ(refusal({"end call", 0, "", 0}), R"(a member too many: ["end call",0,"",0])");
  std::string tooLong("\xFF\xFF\xFF\xFF", 4);
  EXPECT_THROW(unpack(tooLong), WireError);
  std::string notCbor("\0\0\0\1\xFF", 5);
  EXPECT_THROW(unpack(notCbor), WireError);
}

// A desktop served on a thread of its own. The desktop belongs to that thread until `stop`.
class Service : public testing::Test {
 protected:
  Service() {
    EXPECT_EQ(pipe(stopPipe), 0);
    path = testing::TempDir() + "desktop-" + std::to_string(getpid());
    desktop.addProcess(
        {.pid = browser, .name = "Browser", .command = "", .application = true, .host = {}});
    desktop.addProcess(
        {.pid = silent, .name = "Silent", .command = "", .application = true, .host = {}});
    desktop.faults().silent_processes = {silent};
    installProgram("/bin/quick", 0.05);
    installProgram("/bin/endless", 1e6);
  }
  ~Service() override {
    stop();
    close(stopPipe[0]);
    close(stopPipe[1]);
  }

  void installProgram(const std::string& name, Seconds seconds) {
    desktop.installProgram(name, [=](ProgramRun& run) {
      run.after(seconds, [&run] {
        run.print("printed");
        run.end(3);
      });
    });
  }
  void serve() {
    auto server =
        std::make_shared<Server>(desktop, calls, path, [] { return std::string("state"); });
    thread = std::thread([this, server] { server->serveUntil(stopPipe[0]); });
  }
  void stop() {
    if (!thread.joinable()) return;
    EXPECT_EQ(write(stopPipe[1], "x", 1), 1);
    thread.join();
  }
  bool ended(const std::string& program) const {
    for (const RecordLine& line : desktop.record().lines()) {
      const auto* end = std::get_if<ProgramEnded>(&line.entry);
      if (end && end->path == program) return true;
    }
    return false;
  }
  static std::string role(Connection& connection, Pid pid) {
    const Request request = CopyAttribute{{pid, 0}, "AXRole"};
    return std::get<std::string>(decodeReply(connection.exchange(request)).value);
  }

  Desktop desktop;
  CallLog calls;
  std::string path;
  int stopPipe[2] = {-1, -1};
  std::thread thread;
};

TEST_F(Service, RequestsAreAnsweredAndTheStateIsTold) {
  serve();
  Connection connection(path);
  EXPECT_EQ(role(connection, browser), "AXApplication");
  EXPECT_EQ(connection.exchange(AskState{}), "state");
}

TEST_F(Service, ARequestThatIsNeverAnsweredHoldsUpNobodyElse) {
  serve();
  auto hanging = std::make_unique<Connection>(path);
  auto never = std::async(std::launch::async, [&] {
    EXPECT_THROW(hanging->exchange(Request(CopyAttribute{{silent, 0}, "AXRole"})), WireError);
  });
  Connection other(path);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(role(other, browser), "AXApplication");
  EXPECT_EQ(never.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
  stop();
  never.get();
}

TEST_F(Service, AProgramRunsAsLongAsItTakesWhileOthersAreServed) {
  serve();
  Connection program(path);
  const auto begun = std::chrono::steady_clock::now();
  auto result = std::async(std::launch::async, [&] {
    return decodeProgramResult(program.exchange(StartProgram{"/bin/quick", {}}));
  });
  Connection other(path);
  EXPECT_EQ(role(other, browser), "AXApplication");
  EXPECT_EQ(result.get().exitStatus, 3);
  EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(50));
}

TEST_F(Service, AProgramThatTheDesktopDoesNotHaveEndsWithALine) {
  serve();
  Connection connection(path);
  const auto result = decodeProgramResult(connection.exchange(StartProgram{"/bin/other", {}}));
  EXPECT_EQ(result.exitStatus, 127);
  EXPECT_EQ(result.standardError, "/bin/other: not on this desktop\n");
}

TEST_F(Service, AClientThatGoesAwayEndsItsProgram) {
  serve();
  const std::string start = pack(encode(StartProgram{"/bin/endless", {}}));
  const int socket = connectTo(path);
  ASSERT_EQ(write(socket, start.data(), start.size()), static_cast<ssize_t>(start.size()));
  Connection other(path);
  EXPECT_EQ(role(other, browser), "AXApplication");
  close(socket);
  EXPECT_EQ(role(other, browser), "AXApplication");
  stop();
  EXPECT_TRUE(ended("/bin/endless"));
}

TEST_F(Service, AClientThatTalksNonsenseIsLetGoAndTheOthersStay) {
  serve();
  Connection other(path);
  const std::string nonsense = pack({"dance"});
  const int socket = connectTo(path);
  ASSERT_EQ(write(socket, nonsense.data(), nonsense.size()), static_cast<ssize_t>(nonsense.size()));
  char byte = 0;
  EXPECT_EQ(read(socket, &byte, 1), 0);
  close(socket);
  EXPECT_EQ(role(other, browser), "AXApplication");
}

TEST_F(Service, ACallIsKnownFromItsBeginToItsEnd) {
  serve();
  Connection connection(path);
  EXPECT_EQ(connection.exchange(BeginCall{"/usr", {"close", "--path", "lib"}}), nullptr);
  EXPECT_EQ(connection.exchange(EndCall{1, "output"}), nullptr);
  EXPECT_EQ(connection.exchange(BeginCall{"/", {"list-windows"}}), nullptr);
  stop();
  ASSERT_EQ(calls.calls().size(), 2U);
  const ToolCall& first = calls.calls()[0];
  EXPECT_EQ(first.arguments, (std::vector<std::string>{"close", "--path", "lib"}));
  EXPECT_TRUE(first.target.starts_with("/usr/lib")) << first.target;
  EXPECT_GE(first.endedAt, first.startedAt);
  EXPECT_EQ(first.status, 1);
  EXPECT_EQ(first.output, "output");
  EXPECT_GE(calls.calls()[1].startedAt, first.endedAt);
  EXPECT_EQ(calls.calls()[1].endedAt, std::nullopt);
  EXPECT_EQ(calls.calls()[1].status, std::nullopt);
}

TEST_F(Service, ACallWhoseConnectionClosesHasEndedWithoutAWord) {
  serve();
  auto connection = std::make_unique<Connection>(path);
  connection->exchange(BeginCall{"/", {"close"}});
  connection.reset();
  Connection other(path);
  EXPECT_EQ(role(other, browser), "AXApplication");
  stop();
  ASSERT_EQ(calls.calls().size(), 1U);
  EXPECT_NE(calls.calls()[0].endedAt, std::nullopt);
  EXPECT_EQ(calls.calls()[0].status, std::nullopt);
}

TEST_F(Service, AConnectionIsOneCallAtATime) {
  serve();
  Connection within(path);
  within.exchange(BeginCall{"/", {"close"}});
  EXPECT_THROW(within.exchange(BeginCall{"/", {"close"}}), WireError);
  Connection without(path);
  EXPECT_THROW(without.exchange(EndCall{0, ""}), WireError);
  Connection other(path);
  EXPECT_EQ(role(other, browser), "AXApplication");
  stop();
  EXPECT_EQ(calls.calls().size(), 1U);
}

TEST_F(Service, TimeThatIsMovedOnPassesAtOnce) {
  Seconds landed = 0;
  desktop.schedule(1.5, [&] { landed = desktop.now(); });
  Server server(desktop, calls, path, [] { return std::string(); });
  const auto begun = std::chrono::steady_clock::now();
  server.moveOn(1.4);
  EXPECT_EQ(landed, 0);
  server.moveOn(0.2);
  EXPECT_EQ(landed, 1.5);
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(1));
}

std::string refusal(Desktop& desktop, const std::string& path) {
  try {
    CallLog calls;
    const Server server(desktop, calls, path, [] { return std::string(); });
  } catch (const WireError& error) {
    return error.what();
  }
  return "accepted";
}

TEST_F(Service, ASocketThatAnswersIsRefusedAndAStaleOneReplaced) {
  serve();
  EXPECT_EQ(refusal(desktop, path), "a desktop already answers at " + path);
  stop();
  thread = {};
  const int stale = ::socket(AF_UNIX, SOCK_STREAM, 0);
  const sockaddr_un address = socketAddress(path);
  ASSERT_EQ(bind(stale, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  close(stale);
  EXPECT_EQ(refusal(desktop, path), "accepted");
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Service, OtherFilesAndOverlongPathsAreNamed) {
  std::ofstream(path) << "kept";
  EXPECT_EQ(refusal(desktop, path), "not a socket: " + path);
  std::filesystem::remove(path);
  const std::string tooLong = "/tmp/" + std::string(200, 'x');
  EXPECT_THAT(refusal(desktop, tooLong),
              testing::MatchesRegex("the socket's path is longer than [0-9]+ bytes: " + tooLong));
}

// --- The world of a program: what the frameworks answer with and without a service. ---

AXError copyRole(Pid pid) {
  const UniChar name[] = {u'A', u'X', u'R', u'o', u'l', u'e'};
  const CFStringRef role = CFStringCreateWithCharacters(kCFAllocatorDefault, name, 6);
  const AXUIElementRef application = AXUIElementCreateApplication(pid);
  CFTypeRef value = nullptr;
  const AXError error = AXUIElementCopyAttributeValue(application, role, &value);
  if (error == kAXErrorSuccess) CFRelease(value);
  CFRelease(application);
  CFRelease(role);
  return error;
}

std::uint32_t keysPressed() {
  return CGEventSourceCounterForEventType(kCGEventSourceStateHIDSystemState, kCGEventKeyDown);
}

OSStatus automationOfTheFinder() {
  constexpr std::string_view bundle = "com.apple.finder";
  AEDesc finder{};
  AECreateDesc(typeApplicationBundleID, bundle.data(), static_cast<long>(bundle.size()), &finder);
  const OSStatus answer =
      AEDeterminePermissionToAutomateTarget(&finder, typeWildCard, typeWildCard, 0);
  AEDisposeDesc(&finder);
  return answer;
}

// Every thread has its own connection, made with its first request: each of these worlds is tried
// on a thread of its own.
TEST_F(Service, AProgramMeetsTheDesktopThatTheEnvironmentNames) {
  for (int i = 0; i < 2; ++i) desktop.postKey({5, true, 0, {}}, {}, Origin::person);
  desktop.addProcess(
      {.pid = 250, .name = "Finder", .command = "", .application = true, .host = {}});
  serve();
  setenv(desktop_variable, path.c_str(), 1);
  std::thread([] {
    EXPECT_EQ(copyRole(browser), kAXErrorSuccess);
    EXPECT_EQ(tessarine::applicationState(browser), tessarine::ApplicationState::running);
    EXPECT_EQ(keysPressed(), 2U);
    EXPECT_TRUE(AXIsProcessTrusted());
    EXPECT_TRUE(CGPreflightScreenCaptureAccess());
    EXPECT_EQ(automationOfTheFinder(), noErr);
  }).join();
  unsetenv(desktop_variable);
}

TEST_F(Service, WithoutAServiceTheDesktopIsEmpty) {
  const auto meetsEmptyDesktop = [] {
    EXPECT_EQ(copyRole(browser), static_cast<AXError>(-25204));
    EXPECT_EQ(keysPressed(), 0U);
    EXPECT_FALSE(AXIsProcessTrusted());
    EXPECT_FALSE(CGPreflightScreenCaptureAccess());
    EXPECT_EQ(automationOfTheFinder(), procNotFound);
    EXPECT_EQ(tessarine::frontmostApplicationPid(), std::nullopt);
    EXPECT_EQ(tessarine::applicationState(browser), tessarine::ApplicationState::unknown);
    EXPECT_EQ(tessarine::screenFrames(), (std::vector<tessarine::Rect>{{0, 0, 1440, 900}}));
    EXPECT_EQ(tessarine::fileManagerDisplayName("/usr/lib/"), "lib");
    EXPECT_EQ(tessarine::fileManagerDisplayName("/"), "/");
  };
  unsetenv(desktop_variable);
  std::thread(meetsEmptyDesktop).join();
}

TEST_F(Service, AProgramThatIsToldOfADesktopWhichDoesNotAnswerEnds) {
  setenv(desktop_variable, path.c_str(), 1);  // where nobody listens
  EXPECT_EXIT(copyRole(browser), testing::ExitedWithCode(1),
              "^no desktop answers at " + path + ": No such file or directory\n$");
  EXPECT_EXIT(tessarine::frontmostApplicationPid(), testing::ExitedWithCode(1),
              "^no desktop answers at ");
  unsetenv(desktop_variable);
}

// Asks a desktop at `path` that takes the connection and the first byte, and closes.
void askWhoeverGoesAway(const std::string& path) {
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  const sockaddr_un address = socketAddress(path);
  bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  listen(listener, 1);
  std::thread([=] {
    const int client = accept(listener, nullptr, nullptr);
    char byte = 0;
    if (read(client, &byte, 1) == 1) close(client);
  }).detach();
  copyRole(browser);
}

TEST_F(Service, AProgramWhoseDesktopGoesAwayEnds) {
  setenv(desktop_variable, path.c_str(), 1);
  EXPECT_EXIT(askWhoeverGoesAway(path), testing::ExitedWithCode(1), "^the desktop went away\n$");
  unsetenv(desktop_variable);
  unlink(path.c_str());
}

// --- Dispatch on real threads. ---

struct Job {
  dispatch_group_t group = dispatch_group_create();
  std::chrono::milliseconds time{0};
  std::promise<void> done = {};
};

void workOn(void* context) {
  Job& job = *static_cast<Job*>(context);
  std::this_thread::sleep_for(job.time);
  dispatch_group_leave(job.group);
  job.done.set_value();
}

std::intptr_t waitFor(Job& job, std::int64_t milliseconds) {
  dispatch_group_enter(job.group);
  dispatch_async_f(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), &job, workOn);
  return dispatch_group_wait(job.group, dispatch_time(DISPATCH_TIME_NOW, milliseconds * 1'000'000));
}

TEST(ServiceDispatch, AWaitEndsWithTheWorkOrWithItsTime) {
  Job quick{.time = std::chrono::milliseconds(5)};
  EXPECT_EQ(waitFor(quick, 10'000), 0);
  quick.done.get_future().wait();
  dispatch_release(quick.group);
  Job slow{.time = std::chrono::milliseconds(100)};
  EXPECT_NE(waitFor(slow, 5), 0);
  EXPECT_EQ(dispatch_group_wait(slow.group, DISPATCH_TIME_FOREVER), 0);
  slow.done.get_future().wait();
  dispatch_release(slow.group);
}

}  // namespace
}  // namespace simulator
