#include "tests/engine/peer.hpp"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iostream>
#include <sstream>

#include "tests/engine/node.hpp"

namespace pexa::engine {

namespace {

constexpr int answer_milliseconds = 60'000;

std::string answer(Status status) {
    return std::to_string(static_cast<int>(status));
}

class Commands {
public:
    std::string execute(const std::string& line) {
        std::istringstream in(line);
        std::string command;
        in >> command;
        if (command == "writer" || command == "reader") {
            return create(command, in);
        }
        if (command == "take") {
            return take(in);
        }
        if (command == "acknowledged") {
            return answer(wait_for_acknowledgments(writer_, patience));
        }
        std::uint32_t number = 0;
        in >> number;
        if (command == "corrupt") {
            return answer(write_note(writer_, number, "!"));
        }
        if (command == "dispose") {
            return answer(dispose_note(writer_, number));
        }
        if (command == "unregister") {
            return answer(unregister_note(writer_, number));
        }
        std::size_t size = 0;
        in >> size;
        return answer(write_note(writer_, number, text_of_size(size), number));
    }

private:
    std::string create(const std::string& command, std::istream& in) {
        std::string topic;
        in >> topic;
        node_ = std::make_unique<Node>(topic);
        if (command == "reader") {
            reader_ = node_->reader();
            return answer(await_writer(reader_) ? Status::ok : Status::timeout);
        }
        Qos qos = keep_everything();
        int depth = 0;
        in >> depth;
        if (depth > 0) {
            qos.history = HistoryPolicy{HistoryKind::keep_last, depth};
        }
        writer_ = node_->writer(qos);
        return answer(Status::ok);
    }

    std::string take(std::istream& in) const {
        std::size_t count = 0;
        in >> count;
        std::string out;
        for (const Sample& sample : take_some(reader_, count)) {
            const std::string text = text_of(sample.payload.bytes());
            out += std::to_string(number_of(sample.info.instance)) + ":" +
                   (text == text_of_size(text.size()) ? std::to_string(text.size()) : text) + " ";
        }
        return out;
    }

    std::unique_ptr<Node> node_;
    EntityId writer_ = no_entity;
    EntityId reader_ = no_entity;
};

}  // namespace

std::string text_of_size(std::size_t size) {
    std::string text(size, ' ');
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = static_cast<char>('a' + (i * 7 + i / 26) % 26);
    }
    return text;
}

int serve_commands() {
    Commands commands;
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << commands.execute(line) << std::endl;
    }
    return 0;
}

Peer::Peer() {
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    char program[] = "/proc/self/exe";
    char role[] = "--peer";
    char* arguments[] = {program, role, nullptr};
    EXPECT_EQ(posix_spawn(&process_, program, &actions, nullptr, arguments, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    commands_ = input[1];
    answers_ = output[0];
}

Peer::~Peer() {
    close(commands_);
    int status = -1;
    if (process_ > 0) {
        waitpid(process_, &status, 0);
    }
    EXPECT_EQ(status, 0) << "the peer process failed";
    close(answers_);
}

std::string Peer::ask(const std::string& command) {
    const std::string line = command + "\n";
    if (::write(commands_, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        return "";
    }
    std::string text;
    pollfd answered{answers_, POLLIN, 0};
    for (char character = 0; poll(&answered, 1, answer_milliseconds) > 0;) {
        if (::read(answers_, &character, 1) != 1 || character == '\n') {
            break;
        }
        text += character;
    }
    return text;
}

}  // namespace pexa::engine
