// A standard output that may block.
#pragma once

#include <fcntl.h>
#include <stdio_ext.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace orvane::test {

/// Leads standard output into a pipe, as small as pipes are, for as long as it lives.
class OutputPipe {
public:
    OutputPipe() {
        std::fflush(stdout);
        EXPECT_EQ(pipe(ends_), 0);
        fcntl(ends_[1], F_SETPIPE_SZ, PIPE_BUF);
        fcntl(ends_[0], F_SETFL, O_NONBLOCK);
        dup2(ends_[1], STDOUT_FILENO);
    }
    ~OutputPipe() {
        __fpurge(stdout);
        clearerr(stdout);
        dup2(real_, STDOUT_FILENO);
        for (const int descriptor : {real_, ends_[0], ends_[1]}) {
            close(descriptor);
        }
    }

    /// Leaves no room in the pipe.
    void fill() const {
        fcntl(ends_[1], F_SETFL, O_NONBLOCK);
        while (write(ends_[1], "x", 1) == 1) {
        }
        fcntl(ends_[1], F_SETFL, 0);
    }
    /// @return what is in the pipe, without what filled it
    std::string take() const {
        std::string taken;
        char byte = 0;
        while (read(ends_[0], &byte, 1) == 1) {
            taken += byte == 'x' ? "" : std::string(1, byte);
        }
        return taken;
    }
    void close_reader() {
        close(ends_[0]);
        ends_[0] = -1;
    }

private:
    int real_ = dup(STDOUT_FILENO);
    int ends_[2] = {};
};

}  // namespace orvane::test
