#include "bench/reader_process.hpp"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace orvane::bench {

ReaderProcess::ReaderProcess(const Options& options) {
    const std::string program =
        std::filesystem::read_symlink("/proc/self/exe").replace_filename("bench_reader");
    const std::string domain = std::to_string(options.domain);
    const std::string expected = std::to_string(options.expected);
    std::array<int, 2> to_child{};
    std::array<int, 2> from_child{};
    if (pipe2(to_child.data(), O_CLOEXEC) != 0 || pipe2(from_child.data(), O_CLOEXEC) != 0) {
        std::perror("bench: pipe2");
        std::exit(1);
    }
    pid_ = fork();
    if (pid_ == 0) {
        dup2(to_child[0], STDIN_FILENO);
        dup2(from_child[1], STDOUT_FILENO);
        execl(program.c_str(), program.c_str(), options.engine.c_str(), domain.c_str(),
              expected.c_str(), nullptr);
        _exit(127);
    }
    close(to_child[0]);
    close(from_child[1]);
    input_ = to_child[1];
    output_ = from_child[0];
    if (read_line() != "ready") {
        std::fprintf(stderr, "bench: the reader does not start\n");
        std::exit(1);
    }
}

ReaderProcess::~ReaderProcess() {
    // A reader ends at the end of its input.
    close(input_);
    close(output_);
    waitpid(pid_, nullptr, 0);
}

nlohmann::json ReaderProcess::result() {
    const std::string line = read_line();
    if (line.empty()) {
        std::fprintf(stderr, "bench: the reader ended without a result\n");
        std::exit(1);
    }
    return nlohmann::json::parse(line);
}

std::string ReaderProcess::read_line() {
    std::string line;
    char character = 0;
    while (read(output_, &character, 1) == 1 && character != '\n') {
        line += character;
    }
    return line;
}

}  // namespace orvane::bench
