#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace TestSupport {

/// A Unix socket handed to `bind` or `connect`.
inline int socketAt(const std::filesystem::path& path, int (*call)(int, const sockaddr*, socklen_t)) {
    const int made = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    if (call(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        throw std::runtime_error("no socket at " + path.string());
    }
    return made;
}

/// A socket with a file, in a folder that is made if needed; nobody listens yet.
inline int boundSocket(const std::filesystem::path& path) {
    std::filesystem::create_directories(path.parent_path());
    return socketAt(path, ::bind);
}

/// Sends all of it, and says whether the other side still took it.
inline bool say(int connection, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto sent = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

/// What came until a blank line or the end.
inline std::string heard(int connection) {
    std::string text;
    char buffer[4096];
    while (!text.ends_with("\r\n\r\n")) {
        const auto count = ::recv(connection, buffer, sizeof buffer, 0);
        if (count <= 0) {
            break;
        }
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
}

/// A real server on a Unix socket that answers each request as it is told, closing every connection.
class ScriptedServer {
public:
    using Answer = std::function<void(int connection, const std::string& request)>;

    ScriptedServer(const std::filesystem::path& path, Answer answer)
        : listener_(boundSocket(path)), answer_(std::move(answer)) {
        ::listen(listener_, 16);
        thread_ = std::thread([this] { serve(); });
    }
    ~ScriptedServer() { finish(); }
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    /// Ends the server and gives what it was asked, one text for each connection that said anything.
    const std::vector<std::string>& finish() {
        if (thread_.joinable()) {
            ::shutdown(listener_, SHUT_RDWR); // wakes accept
            thread_.join();
            ::close(listener_);
        }
        return requests_;
    }

private:
    void serve() {
        for (int connection; (connection = ::accept(listener_, nullptr, nullptr)) >= 0; ::close(connection)) {
            const std::string request = heard(connection);
            if (!request.empty()) {
                requests_.push_back(request);
                answer_(connection, request);
            }
        }
    }

    int listener_;
    Answer answer_;
    std::vector<std::string> requests_; // the thread's until it has ended
    std::thread thread_;
};

/// Runs what must fail with that kind of `Failure`.
template <typename Failure>
void expectFailure(typename Failure::Kind kind, const auto& operation) {
    try {
        operation();
        ADD_FAILURE() << "did not fail";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.kind(), kind) << failure.what();
    }
}

} // namespace TestSupport
