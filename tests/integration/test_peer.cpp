// The program that tests run beside themselves:
//
//   test_peer log DOMAIN [--kind APPLICATION_KIND] [--profile LIBRARY PROFILE] [--queue SIZE]
//       An application that logs as its input says, one command a line:
//           log LEVEL COUNT GAP_US    logs the next COUNT numbers, with a pause after each
//           at SECOND NANOSECOND      logs the next number with this time
//           say LEVEL CATEGORY TEXT   logs both texts, which std::quoted has written
//           identity                  answers HOST:APP, as the viewer shows it
//           finish                    finalises the logger
//           logged                    answers how many messages the logger was given
//       It answers every command by a line. For each number it prints "logged LEVEL BEFORE AFTER
//       NUMBER", where the middle is the wall clock around the call in nanoseconds.
//   test_peer flood DOMAIN COUNT
//       An application that logs as fast as its logger can publish, while the middleware reports
//       all its steps to the logger's device. It waits for a line, logs COUNT messages of the
//       category "flood" and one of "com.qel.end", and waits for the end of its input. It prints
//       "memory BYTES", its heap in use, after a tenth of the messages and after the last.
//   test_peer threads DOMAIN CYCLES
//       An application that starts and finalises its logger CYCLES times while eight threads log
//       and the middleware reports the samples of the trigger topic. It prints "cycle N" after
//       each cycle.
//   test_peer listener DOMAIN CYCLES
//       The same, with a logger in the application's participant, whose listener logs for every
//       sample of the trigger topic.
//   test_peer trigger DOMAIN
//       Prints "triggering" and writes samples of the trigger topic until its input ends.
//   test_peer visit DOMAIN
//       A remote tool that joins the domain, reads logs and States, sends commands to each logger
//       and leaves, again and again until its input ends. It prints "visited" after the first
//       answer to a command.
//
// The lines that are named here begin with "> ", but for "logged".

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "tests/integration/peer.hpp"
#include "tests/integration/peer_protocol.hpp"

// Defined by the sanitizers' runtimes.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace orvane::tests {
namespace {

/// The mode "log".
class CommandedApplication {
public:
    Logger logger;

    /// @return the answer
    std::string execute(const std::string& name, std::istream& arguments) {
        if (name == "log") {
            log(arguments);
        } else if (name == "at") {
            log_at(arguments);
        } else if (name == "say") {
            int level = 0;
            std::string category;
            std::string text;
            arguments >> level >> std::quoted(category) >> std::quoted(text);
            logger.log(level, category, text);
        } else if (name == "identity") {
            const QEL_KX_DDSEntities* entities = logger.instance()->ddsEntities;
            char text[32];
            std::snprintf(text, sizeof text, "%08x:%08x",
                          QEL_KX_DDSEntities_getRtpsHostId(entities),
                          QEL_KX_DDSEntities_getRtpsAppId(entities));
            return text;
        } else if (name == "finish") {
            return "finish " + std::to_string(Logger::finish());
        } else if (name == "logged") {
            QEL_KX_Statistics now;
            QEL_KX_Orvane_getStatistics(&now);
            return std::to_string(now.accepted + now.refusedForRoom + now.refusedForMemory);
        } else {
            return "unknown command: " + name;
        }
        return name;
    }

private:
    void log(std::istream& arguments) {
        int level = 0;
        int count = 0;
        int gap_us = 0;
        arguments >> level >> count >> gap_us;
        // Printed afterwards, so that the test's pipe has no influence on the pace.
        std::string records;
        for (int i = 0; i < count; ++i) {
            const std::string text = std::to_string(next_number_++);
            const std::int64_t before = wall_clock();
            logger.log(level, numbered_category, text);
            records += record(level, before, wall_clock(), text);
            std::this_thread::sleep_for(std::chrono::microseconds{gap_us});
        }
        std::fputs(records.c_str(), answers);
    }

    void log_at(std::istream& arguments) {
        DDS_Time_t time{};
        arguments >> time.sec >> time.nanosec;
        const std::string text = std::to_string(next_number_++);
        const QEL_KX_LogMessageParams params{300, text.c_str(), numbered_category, time};
        QEL_KX_Orvane_logMessageWithParams(logger.instance(), &params);
        const std::int64_t stamp = time.sec * std::int64_t{1'000'000'000} + time.nanosec;
        std::fputs(record(300, stamp, stamp, text).c_str(), answers);
    }

    static std::string record(int level, std::int64_t before, std::int64_t after,
                              const std::string& text) {
        return std::string{record_mark} + std::to_string(level) + ' ' + std::to_string(before) +
               ' ' + std::to_string(after) + ' ' + text + '\n';
    }

    int next_number_ = 0;
};

void obey(int domain_id, const std::vector<std::string>& settings) {
    OptionsPointer options = make_options(domain_id);
    QEL_KX_Options_setQueueSize(options.get(), 1024);
    for (std::size_t i = 0; i < settings.size(); ++i) {
        if (settings[i] == "--kind") {
            QEL_KX_Options_setApplicationKind(options.get(), settings.at(++i).c_str());
        } else if (settings[i] == "--profile") {
            QEL_KX_Options_setQosLibrary(options.get(), settings.at(++i).c_str());
            QEL_KX_Options_setQosProfile(options.get(), settings.at(++i).c_str());
        } else if (settings[i] == "--queue") {
            QEL_KX_Options_setQueueSize(options.get(), std::stoi(settings.at(++i)));
        }
    }
    CommandedApplication application;
    application.logger.start(std::move(options));
    for (std::string name; std::cin >> name;) {
        tell(application.execute(name, std::cin));
    }
}

/// Bytes that the program has allocated and not freed, also where a sanitizer keeps freed memory.
std::size_t heap_in_use() {
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return __sanitizer_get_current_allocated_bytes();
    }
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

/// Logs no faster than the queue of @p queue_size messages can take, until all are published.
void log_paced(Logger& logger, int count, int queue_size) {
    const auto queued = [] {
        const QEL_KX_MessageQueue& queue = *QEL_KX_Orvane_getMessageQueue();
        QELOsapiSemaphore_take(queue.mutex, nullptr);
        const int length = queue.list.count;
        QELOsapiSemaphore_give(queue.mutex);
        return length;
    };
    const auto wait_for_queue = [&](int longest) {
        while (queued() > longest) {
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
        }
    };
    for (int i = 0; i < count; ++i) {
        if (i % 512 == 0) {
            wait_for_queue(queue_size / 2);
        }
        logger.log(QEL_KX_LEVEL_INFO, "flood", "hello");
    }
    wait_for_queue(0);
    tell("memory " + std::to_string(heap_in_use()));
}

void flood(int domain_id, int count) {
    constexpr int queue_size = 4096;
    OptionsPointer options = make_options(domain_id);
    QEL_KX_Options_setFilterLevel(options.get(), QEL_KX_LEVEL_TRACE);
    QEL_KX_Options_setQueueSize(options.get(), queue_size);
    report_everything();
    Logger logger;
    logger.start(std::move(options));
    std::string line;
    std::getline(std::cin, line);
    log_paced(logger, count / 10, queue_size);
    log_paced(logger, count - count / 10, queue_size);
    logger.log(QEL_KX_LEVEL_INFO, "com.qel.end", "");
    std::cin.get();
}

bool run(const std::string& mode, int domain_id, const std::vector<std::string>& rest) {
    const auto count = [&] { return std::stoi(rest.at(0)); };
    const std::map<std::string, std::function<void()>> modes = {
        {"log", [&] { obey(domain_id, rest); }},
        {"flood", [&] { flood(domain_id, count()); }},
        {"threads", [&] { fire_from_threads(domain_id, count()); }},
        {"listener", [&] { fire_from_listener(domain_id, count()); }},
        {"trigger", [&] { trigger_until_input_ends(domain_id); }},
        {"visit", [&] { visit_until_input_ends(domain_id); }},
    };
    const bool is_known = modes.contains(mode);
    if (is_known) {
        modes.at(mode)();
    }
    return is_known;
}

}  // namespace
}  // namespace orvane::tests

int main(int argc, char** argv) {
    if (argc < 3 || !orvane::tests::run(argv[1], std::atoi(argv[2]), {argv + 3, argv + argc})) {
        std::fputs("usage: test_peer MODE DOMAIN …; see test_peer.cpp\n", stderr);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
