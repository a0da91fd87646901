// A program that tries everything at a logger, whatever it may do:
//
//   intruder DOMAIN HOST:APP TEXT
//
// It prints "joined", "reads logs" when it has a message that is not TEXT, and "reads State". Until
// its input ends it asks the logger of HOST:APP for the level TRACE, and publishes messages TEXT in
// the logger's name. INTRUDER_CLOCK is the time at its start in seconds since 1970-01-01 UTC, if it
// is set: a dishonest program need not take the true time.
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "tools/domain/entities.hpp"

namespace {

namespace tools = orvane::tools;

time_t seconds_to_add() {
    static const time_t added = [] {
        const char* pretended = std::getenv("INTRUDER_CLOCK");
        timespec now{};
        syscall(SYS_clock_gettime, CLOCK_REALTIME, &now);
        return pretended == nullptr ? 0 : std::strtoll(pretended, nullptr, 10) - now.tv_sec;
    }();
    return added;
}

void tell(const char* what) {
    std::puts(what);
    std::fflush(stdout);
}

QEL_KX_HostAndAppId parse_identity(const char* text) {
    char* rest = nullptr;
    const auto host = static_cast<DDS_Long>(std::strtoul(text, &rest, 16));
    return {host, static_cast<DDS_Long>(std::strtoul(rest + 1, nullptr, 16))};
}

/// What it has of the topics, as far as the engine gives it anything.
class Intruder {
public:
    Intruder(std::int32_t domain, const QEL_KX_HostAndAppId& target, std::string text)
        : target_(target),
          text_(std::move(text)),
          reading_(tools::join_domain({domain})),
          writing_(tools::join_domain({domain})) {
        if (has_joined()) {
            logs_ = reader<QEL_KX_LogMessage>();
            states_ = reader<QEL_KX_ADMIN_State>();
            requests_ = writer<QEL_KX_ADMIN_CommandRequest>();
            messages_ = writer<QEL_KX_LogMessage>();
        }
    }

    bool has_joined() const { return reading_ != nullptr && writing_ != nullptr; }

    void try_everything() {
        if (has_taken<QEL_KX_LogMessage>(
                logs_, [&](const QEL_KX_LogMessage& sample) { return sample.message != text_; })) {
            tell("reads logs");
        }
        if (has_taken<QEL_KX_ADMIN_State>(states_, [](const auto&) { return true; })) {
            tell("reads State");
        }
        if (requests_ != nullptr) {
            QEL_KX_ADMIN_CommandRequest request{};
            QEL_KX_ADMIN_CommandRequest_initialize(&request);
            request.targetHostAndAppId = target_;
            request.invocation = ++invocation_;
            request.command._d = QEL_KX_SET_LOG_LEVEL;
            request.command._u.filterLevel = QEL_KX_LEVEL_TRACE;
            QEL_KX_ADMIN_CommandRequestDataWriter_write(requests_, &request, &DDS_HANDLE_NIL);
            QEL_KX_ADMIN_CommandRequest_finalize(&request);
        }
        if (messages_ != nullptr) {
            char category[] = "";
            const QEL_KX_LogMessage sample{target_, QEL_KX_LEVEL_INFO, category, text_.data()};
            QEL_KX_LogMessageDataWriter_write(messages_, &sample, &DDS_HANDLE_NIL);
        }
    }

private:
    template <typename Sample>
    DDS_DataReader* reader() {
        return tools::create_reader<Sample>(reading_.get(), DDS_TRANSIENT_LOCAL_DURABILITY_QOS,
                                            DDS_KEEP_LAST_HISTORY_QOS);
    }
    template <typename Sample>
    DDS_DataWriter* writer() {
        return tools::create_writer<Sample>(
            writing_.get(), {.history = DDS_KEEP_LAST_HISTORY_QOS, .kept_for_late_readers = 1});
    }

    template <typename Sample, typename Condition>
    static bool has_taken(DDS_DataReader* reader, Condition condition) {
        bool found = false;
        if (reader != nullptr) {
            tools::take_some<Sample>(reader, tools::samples_per_take,
                                     [&](const Sample& sample, const DDS_SampleInfo& info) {
                                         found |= info.valid_data != 0 && condition(sample);
                                     });
        }
        return found;
    }

    QEL_KX_HostAndAppId target_;
    std::string text_;
    // A participant has each topic only once.
    tools::Participant reading_;
    tools::Participant writing_;
    DDS_DataReader* logs_ = nullptr;
    DDS_DataReader* states_ = nullptr;
    DDS_DataWriter* requests_ = nullptr;
    DDS_DataWriter* messages_ = nullptr;
    DDS_Long invocation_ = 0;
};

}  // namespace

/// For the leak sanitizer: in a process with two secured participants the engine forgets some bytes
/// of a handshake.
extern "C" __attribute__((visibility("default"))) int __lsan_is_turned_off() {
    return 1;
}

/// @name In place of the C library's, for the engine and for OpenSSL.
/// @{
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* time) noexcept {
    const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    if (clock == CLOCK_REALTIME) {
        time->tv_sec += seconds_to_add();
    }
    return result;
}
extern "C" __attribute__((visibility("default"))) time_t time(time_t* out) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (out != nullptr) {
        *out = now.tv_sec;
    }
    return now.tv_sec;
}
/// @}

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: intruder DOMAIN HOST:APP TEXT\n", stderr);
        return EXIT_FAILURE;
    }
    Intruder intruder{std::stoi(argv[1]), parse_identity(argv[2]), argv[3]};
    tell(intruder.has_joined() ? "joined" : "did not join");
    for (pollfd input{STDIN_FILENO, POLLIN, 0}; poll(&input, 1, 50) == 0;) {
        intruder.try_everything();
    }
    return EXIT_SUCCESS;
}
