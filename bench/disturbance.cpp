#include "bench/disturbance.hpp"

namespace orvane::bench {
namespace {

constexpr std::size_t memory_size = std::size_t{64} << 20U;
constexpr std::size_t cache_line = 64;

}  // namespace

Disturbance::Disturbance(Kind kind) : kind_{kind} {
    if (kind_ != Kind::none) {
        memory_.resize(memory_size);
        thread_ = std::jthread{[this](const std::stop_token& token) { run(token); }};
    }
}

Disturbance::~Disturbance() {
    thread_.request_stop();
    asked_.release();
}

void Disturbance::prepare_call() {
    if (kind_ == Kind::cold) {
        asked_.release();
        walked_.acquire();
    }
}

void Disturbance::run(const std::stop_token& token) {
    while (true) {
        if (kind_ == Kind::cold) {
            asked_.acquire();
        }
        if (token.stop_requested()) {
            return;
        }
        walk();
        if (kind_ == Kind::cold) {
            walked_.release();
        }
    }
}

void Disturbance::walk() {
    for (std::size_t place = 0; place < memory_.size(); place += cache_line) {
        ++memory_[place];
    }
    asm volatile("" : : "r"(memory_.data()) : "memory");
}

}  // namespace orvane::bench
