/// @file disturbance.hpp
/// @brief What other programs do to the caches while an application logs.
#pragma once

#include <cstddef>
#include <semaphore>
#include <stop_token>
#include <thread>
#include <vector>

namespace orvane::bench {

/// A thread that walks through more memory than the caches hold.
class Disturbance {
public:
    enum class Kind {
        none,
        cold,       ///< it walks once before each call, which waits for it
        neighbour,  ///< it walks all the time
    };

    explicit Disturbance(Kind kind);
    ~Disturbance();
    Disturbance(const Disturbance&) = delete;
    Disturbance& operator=(const Disturbance&) = delete;

    /// To be called by one thread, before each of its calls.
    void prepare_call();

private:
    void run(const std::stop_token& token);
    void walk();

    Kind kind_;
    std::vector<char> memory_;
    std::binary_semaphore asked_{0};
    std::binary_semaphore walked_{0};
    std::jthread thread_;
};

}  // namespace orvane::bench
