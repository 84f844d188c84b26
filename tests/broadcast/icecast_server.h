#pragma once

#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "broadcast/encoding/server_stats.h"

extern char** environ;

namespace tavora::test {

// Debian's icecast2, run by the test as a plain process on 127.0.0.1 with a
// configuration of its own in `folder`. Icecast won't run as root unless told to
// change to another user, so as root it runs as nobody and its folder is open to it.
class IcecastServer {
  public:
    static constexpr const char* kPassword = "tavora-source";

    explicit IcecastServer(std::filesystem::path folder) : folder_(std::move(folder)) {
        std::filesystem::create_directories(folder_ / "log");
        port_ = free_port();
        write_config();
    }
    ~IcecastServer() { stop(); }
    IcecastServer(const IcecastServer&) = delete;
    IcecastServer& operator=(const IcecastServer&) = delete;

    int port() const { return port_; }

    // Starts the server and waits until its status page answers.
    bool start() {
        stop();
        const std::string config = (folder_ / "icecast.xml").string();
        const char* argv[] = {"icecast2", "-c", config.c_str(), nullptr};
        if (posix_spawnp(&pid_, "icecast2", nullptr, nullptr, const_cast<char**>(argv), environ) !=
            0) {
            pid_ = 0;
            return false;
        }
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (std::chrono::steady_clock::now() < deadline) {
            if (FetchIcecastStatus("127.0.0.1", port_, 200)) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return false;
    }

    // Kills the server outright, as a crash would.
    void stop() {
        if (pid_ <= 0) return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = 0;
    }

    // Stops the server in its tracks: its sockets stay open and answer nothing, as a
    // hung or overloaded server's do.
    void freeze() const {
        if (pid_ > 0) kill(pid_, SIGSTOP);
    }
    void thaw() const {
        if (pid_ > 0) kill(pid_, SIGCONT);
    }

    std::string status() const { return FetchIcecastStatus("127.0.0.1", port_).value_or(""); }
    std::string url(const std::string& mount) const {
        return "http://127.0.0.1:" + std::to_string(port_) + mount;
    }

  private:
    static int free_port() {
        const int fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
        socklen_t length = sizeof address;
        getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
        close(fd);
        return ntohs(address.sin_port);
    }

    void write_config() {
        std::string security;
        if (geteuid() == 0) {
            security =
                "<security><changeowner><user>nobody</user><group>nogroup</group></changeowner>"
                "</security>";
            chmod((folder_ / "log").c_str(), 0777);
            // nobody must reach the log folder through the test's own folders.
            const auto temp = std::filesystem::temp_directory_path();
            for (auto path = folder_; path.has_parent_path() && path != temp;
                 path = path.parent_path())
                chmod(path.c_str(), 0755);
        }
        std::ofstream(folder_ / "icecast.xml")
            << "<icecast><limits><sources>4</sources><header-timeout>5</header-timeout>"
               "<source-timeout>5</source-timeout><burst-size>16384</burst-size></limits>\n"
               "<authentication><source-password>"
            << kPassword << "</source-password><admin-password>tavora-admin</admin-password>"
            << "</authentication>\n<listen-socket><port>" << port_
            << "</port><bind-address>127.0.0.1</bind-address></listen-socket>\n<paths><logdir>"
            << (folder_ / "log").string()
            << "</logdir><webroot>/usr/share/icecast2/web</webroot></paths>\n"
            << security << "\n</icecast>\n";
    }

    std::filesystem::path folder_;
    int port_ = 0;
    pid_t pid_ = 0;
};

}  // namespace tavora::test
