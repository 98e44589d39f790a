// What a list of containers takes from the question to the sorted list, against a server that answers at once
// over a real socket, as the engine would.

#include "bench/support/Figures.h"
#include "bench/support/Options.h"
#include "bench/support/TemporaryHome.h"

#include "core/containers/DevWatchDockerClient.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using FellowCore::DevWatchDockerClient;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr double budgetMilliseconds = 1;
constexpr int usualContainers = 20;
constexpr int manyContainers = 1000;

void require(bool holds, const char* otherwise) {
    if (!holds) {
        throw std::runtime_error(otherwise);
    }
}

/// As large an entry as an engine makes of a small service.
std::string entry(int number) {
    std::string id = std::to_string(number);
    id.insert(0, 64 - id.size(), 'a');
    return R"({"Id":")" + id + R"(","Names":["/shop-service-)" + std::to_string(number) +
           R"("],"Image":"shop/service:2","ImageID":"sha256:)" + id +
           R"(","Command":"/bin/serve --quiet","Created":1795256983,"Ports":[{"IP":"0.0.0.0","PrivatePort":80,)"
           R"("PublicPort":8080,"Type":"tcp"},{"IP":"::","PrivatePort":80,"PublicPort":8080,"Type":"tcp"}],)"
           R"("Labels":{"com.docker.compose.project":"shop","com.docker.compose.service":"service",)"
           R"("com.docker.compose.project.working_dir":"/home/someone/projects/shop"},"State":"running",)"
           R"("Status":"Up 2 hours","HostConfig":{"NetworkMode":"shop_default"},"NetworkSettings":{"Networks":)"
           R"({"shop_default":{"IPAMConfig":null,"NetworkID":")" +
           id + R"(","Gateway":"172.18.0.1","IPAddress":"172.18.0.2","IPPrefixLen":16}}},"Mounts":[]})";
}

/// Answers every request with the same list, and closes the connection.
class Engine {
public:
    Engine(const std::string& path, int containers)
        : listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        std::string list;
        for (int number = 0; number < containers; ++number) {
            list += (number == 0 ? "[" : ",") + entry(number);
        }
        answer_ = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n\r\n" + list + "]";
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::filesystem::remove(path);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        require(::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                    ::listen(listener_, 4) == 0,
                "no socket to answer on");
        thread_ = std::thread([this] { serve(); });
    }
    ~Engine() {
        ::shutdown(listener_, SHUT_RDWR); // wakes accept
        thread_.join();
        ::close(listener_);
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

private:
    void serve() const {
        char request[1024]; // the client's is short and comes in one piece
        for (int connection; (connection = ::accept(listener_, nullptr, nullptr)) >= 0; ::close(connection)) {
            ::recv(connection, request, sizeof request, 0);
            std::string_view rest = answer_;
            for (ssize_t sent = 0; !rest.empty() && sent >= 0;) {
                sent = ::send(connection, rest.data(), rest.size(), MSG_NOSIGNAL);
                rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(sent, 0)));
            }
        }
    }

    int listener_;
    std::string answer_;
    std::thread thread_;
};

std::vector<double> roundTrips(const std::string& home, int containers, int times) {
    const DevWatchDockerClient client(home);
    const Engine engine(client.socketPath, containers);
    std::vector<double> each;
    for (int round = 0; round < times; ++round) {
        const auto start = Clock::now();
        const auto list = client.containers();
        each.push_back(Milliseconds(Clock::now() - start).count());
        require(list.size() == static_cast<std::size_t>(containers), "another list");
    }
    return each;
}

int run(int count, char** values) {
    const Bench::Options options(count, values);
    const int times = options.quick ? 20 : 300;
    const Bench::TemporaryHome home;
    const std::string path = home.folders().home();
    Bench::Figures figures;
    figures.add({"list of 20 containers, there and back", roundTrips(path, usualContainers, times), "ms",
                 budgetMilliseconds, 2});
    figures.add({"list of 1,000 containers, there and back", roundTrips(path, manyContainers, times), "ms",
                 std::nullopt, 2});
    return figures.status();
}

} // namespace

int main(int count, char** values) {
    return Bench::reporting(run, count, values);
}
