// What a message costs: the exchange itself, the whole way of a notify(), and what of it its caller pays.

#include "link/Notify.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/Dispatch.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/Process.h"
#include "tests/support/RawSocket.h"
#include "tests/support/ServedPort.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <latch>
#include <semaphore>
#include <string>
#include <systemd/sd-bus.h>
#include <thread>
#include <vector>

using namespace platform;
using namespace tests;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kBodySize = 200;

/// Answers each connection's one message of a fixed size with itself, with the fewest system calls there can be.
class BareServer {
  public:
    explicit BareServer(const std::filesystem::path& path)
        : listener_(RawSocket::listeningAt(path, SOMAXCONN)), thread_([this] { serve(); }) {}
    ~BareServer() {
        ::shutdown(listener_.number(), SHUT_RDWR);
        thread_.join();
    }
    BareServer(const BareServer&) = delete;
    BareServer& operator=(const BareServer&) = delete;

  private:
    void serve() const {
        std::array<char, kBodySize> body{};
        while (true) {
            const FileDescriptor client(::accept4(listener_.number(), nullptr, nullptr, SOCK_CLOEXEC));
            if (!client) return;
            if (::recv(client.number(), body.data(), body.size(), MSG_WAITALL) == kBodySize)
                ::send(client.number(), body.data(), body.size(), MSG_NOSIGNAL);
        }
    }

    RawSocket listener_;
    std::thread thread_;
};

void BareSocketExchange(benchmark::State& state) {
    const PortsFolder folder;
    const auto path = folder.socket("bare");
    const BareServer server(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    std::array<char, kBodySize> body{};
    for (auto _ : state) {
        const FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const bool done =
            ::connect(client.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
            ::send(client.number(), body.data(), body.size(), MSG_NOSIGNAL) == kBodySize &&
            ::recv(client.number(), body.data(), body.size(), MSG_WAITALL) == kBodySize;
        if (!done) state.SkipWithError("the exchange failed");
    }
}

std::optional<Data> echo(CFMessagePort& /*port*/, std::int32_t /*id*/, const std::optional<Data>& body) {
    return body;
}

void PortExchange(benchmark::State& state) {
    const PortsFolder folder;
    const ServedPort port("com.nevo.lumora/echo", echo);
    const Data body(kBodySize);
    for (auto _ : state) {
        std::optional<Data> reply;
        const auto remote = CFMessagePortCreateRemote("com.nevo.lumora/echo");
        if (CFMessagePortSendRequest(*remote, 0, body, 1, 1, &reply) != kCFMessagePortSuccess)
            state.SkipWithError("the exchange failed");
    }
}

/// notify() with a text of 200 bytes, and the wait for its reply block.
void NotifyToReply(benchmark::State& state) {
    const PortsFolder folder;
    const ServedPort port("com.nevo.lumora/echo", echo);
    const Value text = std::string(kBodySize, 'x');
    std::binary_semaphore replied(0);
    for (auto _ : state) {
        lumora::notify("echo", text, [&replied](const auto&) { replied.release(); });
        replied.acquire();
    }
}

/// How long 100 clients wait that connect at once while 200 others never pause: until the last of them is answered. The
/// answer is one that a tweak gives.
void NewcomersAmongBusy(benchmark::State& state) {
    constexpr int kThreads = 4;
    constexpr std::size_t kBusyEach = 50;
    constexpr std::size_t kNew = 100;
    Dictionary settings;
    for (int i = 0; i < 50; ++i)
        settings.set("kSetting" + std::to_string(i), i);
    const PortsFolder folder;
    const ServedPort port("com.nevo.lumora/settings", [&settings](auto&, auto, const auto&) {
        return NSKeyedArchiver::archivedDataWithRootObject(settings);
    });
    const auto path = folder.socket("com.nevo.lumora/settings");
    const auto request = frameWithoutBody();
    const auto size = request.size() + NSKeyedArchiver::archivedDataWithRootObject(settings)->size();

    const auto asking = [&](std::size_t count) {
        std::vector<RawSocket> clients;
        while (clients.size() < count) {
            clients.push_back(RawSocket::connectedTo(path));
            clients.back().send(request);
        }
        return clients;
    };

    std::atomic<bool> leave = false;
    std::atomic<bool> failed = false;
    std::latch connected(kThreads);
    std::vector<std::thread> busy;
    for (int i = 0; i < kThreads; ++i) {
        busy.emplace_back([&] {
            const auto clients = asking(kBusyEach);
            connected.count_down();
            while (!leave) {
                for (const auto& client : clients)
                    if (client.receive(size).size() != size || !client.send(request)) failed = true;
            }
        });
    }
    connected.wait();
    for (auto _ : state) {
        const auto begin = Clock::now();
        const auto fresh = asking(kNew);
        for (const auto& client : fresh)
            if (client.receive(size).size() != size) failed = true;
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
    }
    leave = true;
    for (auto& thread : busy)
        thread.join();
    if (failed) state.SkipWithError("an exchange failed");
}

// --- The same over a message bus, on a new connection each time ---

class PrivateBus {
  public:
    explicit PrivateBus(const PortsFolder& folder)
        : address_("unix:path=" + folder.socket("bus").native()),
          daemon_({"/usr/bin/dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address",
                   "--address=" + address_}) {
        static_cast<void>(daemon_.read()); // its address, once it is there
        service_ = connect();
        sd_bus_request_name(service_, "com.example.Echo", 0);
        sd_bus_add_object(service_, nullptr, "/echo", answer, nullptr);
        thread_ = std::thread([this] {
            while (!leave_ && sd_bus_wait(service_, UINT64_MAX) >= 0)
                while (sd_bus_process(service_, nullptr) > 0) {
                }
        });
    }
    ~PrivateBus() {
        leave_ = true;
        static_cast<void>(call());
        thread_.join();
        sd_bus_flush_close_unref(service_);
        daemon_.kill();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// One method call with 200 bytes each way, from connecting to disconnecting.
    [[nodiscard]] bool call() const {
        sd_bus* client = connect();
        sd_bus_message* request = nullptr;
        sd_bus_message* reply = nullptr;
        const std::array<char, kBodySize> body{};
        const bool done =
            sd_bus_message_new_method_call(client, &request, "com.example.Echo", "/echo", "com.example", "Echo") >= 0 &&
            sd_bus_message_append_array(request, 'y', body.data(), body.size()) >= 0 &&
            sd_bus_call(client, request, 0, nullptr, &reply) >= 0;
        sd_bus_message_unref(request);
        sd_bus_message_unref(reply);
        sd_bus_close_unref(client);
        return done;
    }

  private:
    [[nodiscard]] sd_bus* connect() const {
        sd_bus* bus = nullptr;
        sd_bus_new(&bus);
        sd_bus_set_address(bus, address_.c_str());
        sd_bus_set_bus_client(bus, 1);
        sd_bus_start(bus);
        return bus;
    }
    static int answer(sd_bus_message* request, void* /*userdata*/, sd_bus_error* /*error*/) {
        const void* body = nullptr;
        std::size_t size = 0;
        sd_bus_message* reply = nullptr;
        sd_bus_message_read_array(request, 'y', &body, &size);
        sd_bus_message_new_method_return(request, &reply);
        sd_bus_message_append_array(reply, 'y', body, size);
        const int sent = sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
        return sent < 0 ? sent : 1;
    }

    std::string address_;
    Process daemon_;
    sd_bus* service_ = nullptr;
    std::atomic<bool> leave_ = false;
    std::thread thread_;
};

void DBusCallNewConnection(benchmark::State& state) {
    const PortsFolder folder;
    const PrivateBus bus(folder);
    for (auto _ : state)
        if (!bus.call()) state.SkipWithError("the call failed");
}

// --- What the caller of notify() pays ---

/// The time of the call alone, not of what it sets off: each message's reply is awaited before the next is sent.
class CallerCost {
  public:
    explicit CallerCost(benchmark::State& state) : state_(state) {}
    ~CallerCost() {
        std::nth_element(costs_.begin(), costs_.begin() + static_cast<std::ptrdiff_t>(costs_.size() / 2), costs_.end());
        state_.counters["value"] = costs_[costs_.size() / 2] * 1e9; // nanoseconds
    }
    CallerCost(const CallerCost&) = delete;
    CallerCost& operator=(const CallerCost&) = delete;

    double notifyOnce() {
        const auto begin = Clock::now();
        lumora::notify("echo", 1, [this](const auto&) { replied_.release(); });
        const std::chrono::duration<double> cost = Clock::now() - begin;
        replied_.acquire();
        costs_.push_back(cost.count());
        return cost.count();
    }

  private:
    benchmark::State& state_;
    std::binary_semaphore replied_{0};
    std::vector<double> costs_;
};

void NotifyCallerCost(benchmark::State& state) {
    const PortsFolder folder;
    const ServedPort port("com.nevo.lumora/echo", echo);
    CallerCost cost(state);
    for (auto _ : state)
        state.SetIterationTime(cost.notifyOnce());
}

void NotifyCallerCostWith200Stuck(benchmark::State& state) {
    constexpr int kStuck = 200;
    constexpr int kBatch = 100; // over long before the stuck ones give up
    const PortsFolder folder;
    const ServedPort port("com.nevo.lumora/echo", echo);
    const auto silent = RawSocket::listeningAt(folder.socket("com.nevo.lumora/silent"), SOMAXCONN);
    CallerCost cost(state);
    for (auto _ : state) {
        std::vector<RawSocket> stuck;
        for (int i = 0; i < kStuck; ++i)
            lumora::notify("silent", nullptr, nullptr);
        while (stuck.size() < kStuck)
            stuck.push_back(silent.accept());
        double seconds = 0;
        for (int i = 0; i < kBatch; ++i)
            seconds += cost.notifyOnce();
        state.SetIterationTime(seconds / kBatch);
        stuck.clear();
        dispatch_wait_until_idle(std::chrono::seconds(10));
    }
}

} // namespace

BENCHMARK(BareSocketExchange)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(PortExchange)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(NotifyToReply)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(DBusCallNewConnection)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(NewcomersAmongBusy)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(NotifyCallerCost)->UseManualTime()->Iterations(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(NotifyCallerCostWith200Stuck)->UseManualTime()->Iterations(20)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
