#include "bench/reader_process.hpp"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace orvane::bench {

ReaderProcess::ReaderProcess(const Options& options)
    : ChildProcess{
          {std::filesystem::read_symlink("/proc/self/exe").replace_filename("bench_reader"),
           options.engine, std::to_string(options.domain), std::to_string(options.expected)}} {
    if (read_line() != "ready") {
        std::fprintf(stderr, "bench: the reader does not start\n");
        std::exit(1);
    }
}

nlohmann::json ReaderProcess::result() {
    const std::string line = read_line();
    if (line.empty()) {
        std::fprintf(stderr, "bench: the reader ended without a result\n");
        std::exit(1);
    }
    return nlohmann::json::parse(line);
}

}  // namespace orvane::bench
