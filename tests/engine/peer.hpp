/// @file peer.hpp
/// @brief Another process that writes and reads notes on command.
#pragma once

#include <sys/types.h>

#include <string>

namespace pexa::engine {

/// This executable started anew, so that samples go through the network. One command a line, each
/// answered with a line:
///
///     writer TOPIC DEPTH   makes a writer; depth 0 keeps all
///     reader TOPIC         makes a reader that keeps all
///     write NUMBER SIZE    writes a note of that many characters
///     corrupt NUMBER       writes one that the type refuses
///     dispose NUMBER, unregister NUMBER
///     take COUNT           waits for that many samples: "number:text …", long texts by their size
///     acknowledged         waits until readers have everything
class Peer {
public:
    Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer();

    /// @return the answer, or "" when the process ended or did not answer in time
    std::string ask(const std::string& command);

private:
    pid_t process_ = -1;
    int commands_ = -1;
    int answers_ = -1;
};

/// The text that the command "write" writes.
[[nodiscard]] std::string text_of_size(std::size_t size);

/// The other process: executes commands until its input ends.
int serve_commands();

}  // namespace pexa::engine
