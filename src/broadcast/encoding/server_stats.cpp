#include "broadcast/encoding/server_stats.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>

namespace tavora {

namespace {

// The JSON object of the source whose listen address ends with the mount, or
// empty. Icecast lists one object a source, without nesting inside it.
std::string source_object(const std::string& status, const std::string& mount) {
    const std::string key = mount + "\"";
    for (std::size_t at = status.find("\"listenurl\""); at != std::string::npos;
         at = status.find("\"listenurl\"", at + 1)) {
        const std::size_t end_of_value = status.find('"', status.find(':', at) + 2);
        if (end_of_value == std::string::npos) break;
        if (status.compare(end_of_value + 1 - key.size(), key.size(), key) != 0) continue;
        const std::size_t open = status.rfind('{', at);
        const std::size_t close = status.find('}', at);
        if (open == std::string::npos || close == std::string::npos) break;
        return status.substr(open, close - open + 1);
    }
    return {};
}

// The raw text of a value in a flat object: a number, or a string without its quotes.
std::string value_of(const std::string& object, const std::string& name) {
    const std::size_t at = object.find("\"" + name + "\":");
    if (at == std::string::npos) return {};
    std::size_t from = at + name.size() + 3;
    if (from < object.size() && object[from] == '"') {
        std::string text;
        for (++from; from < object.size() && object[from] != '"'; ++from) {
            if (object[from] == '\\' && from + 1 < object.size()) ++from;
            text += object[from];
        }
        return text;
    }
    const std::size_t end = object.find_first_of(",}", from);
    return object.substr(from, end - from);
}

}  // namespace

std::optional<std::string> FetchIcecastStatus(const std::string& host, int port, int timeout_ms) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0)
        return std::nullopt;
    const int fd = socket(found->ai_family, found->ai_socktype | SOCK_NONBLOCK, 0);
    const bool started =
        fd >= 0 && (connect(fd, found->ai_addr, found->ai_addrlen) == 0 || errno == EINPROGRESS);
    freeaddrinfo(found);
    if (!started) {
        if (fd >= 0) close(fd);
        return std::nullopt;
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    auto wait_for = [&](short events) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd p{fd, events, 0};
        return left.count() > 0 && poll(&p, 1, static_cast<int>(left.count())) == 1 &&
               (p.revents & events) != 0;
    };
    std::string response;
    const std::string request =
        "GET /status-json.xsl HTTP/1.0\r\nHost: " + host + "\r\nUser-Agent: Tavora\r\n\r\n";
    bool ok = wait_for(POLLOUT) && send(fd, request.data(), request.size(), MSG_NOSIGNAL) ==
                                       static_cast<ssize_t>(request.size());
    char buffer[4096];
    while (ok && wait_for(POLLIN)) {
        const ssize_t got = recv(fd, buffer, sizeof buffer, 0);
        if (got <= 0) break;
        response.append(buffer, static_cast<std::size_t>(got));
    }
    close(fd);
    const std::size_t body = response.find("\r\n\r\n");
    const std::size_t status_line = response.find("\r\n");
    if (!ok || response.compare(0, 5, "HTTP/") != 0 || response.find(" 200") > status_line ||
        body == std::string::npos)
        return std::nullopt;
    return response.substr(body + 4);
}

int ListenersOf(const std::string& status, const std::string& mount) {
    const std::string text = value_of(source_object(status, mount), "listeners");
    return text.empty() ? -1 : std::atoi(text.c_str());
}

std::string TitleOf(const std::string& status, const std::string& mount) {
    return value_of(source_object(status, mount), "title");
}

}  // namespace tavora
