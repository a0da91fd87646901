#include "tests/integration/peer.hpp"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <stop_token>
#include <thread>
#include <utility>

#include "tools/domain/administration.hpp"
#include "tools/domain/log_subscription.hpp"

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;

/// Leaves the standard output to @ref tell. While there is no logger, the middleware prints more
/// there than a test can read in time.
void silence_middleware() {
    answers = fdopen(dup(STDOUT_FILENO), "w");
    if (answers == nullptr || std::freopen("/dev/null", "w", stdout) == nullptr) {
        std::exit(EXIT_FAILURE);
    }
    // Otherwise the first line of a forked child allocates it, and the address sanitizer's heap may
    // be locked in a child by a thread that the child does not have.
    static std::array<char, BUFSIZ> buffer;
    std::setvbuf(stdout, buffer.data(), _IOFBF, buffer.size());
}

constexpr tools::TopicNames trigger_topic{"test/trigger", QEL_KX_LOG_REGISTERED_TYPE_NAME};

/// A participant of the application's own that knows the type of the trigger topic.
tools::Participant make_participant(int domain_id) {
    tools::Participant participant{DDS_DomainParticipantFactory_create_participant(
        DDS_DomainParticipantFactory_get_instance(), domain_id, DDS_QOS_DEFAULT, nullptr,
        DDS_STATUS_MASK_NONE)};
    if (!participant || QEL_KX_LogMessageTypeSupport_register_type(
                            participant.get(), trigger_topic.type) != DDS_RETCODE_OK) {
        std::exit(EXIT_FAILURE);
    }
    return participant;
}

/// Runs an action in a listener for every sample of the trigger topic.
class Trigger {
public:
    Trigger(int domain_id, std::function<void()> action)
        : action_(std::move(action)), participant_(make_participant(domain_id)) {
        reader_ = tools::create_reader(participant_.get(), trigger_topic,
                                       DDS_VOLATILE_DURABILITY_QOS, DDS_KEEP_ALL_HISTORY_QOS);
        DDS_DataReaderListener listener{};
        listener.listener_data = this;
        listener.on_data_available = on_data_available;
        DDS_DataReader_set_listener(reader_, &listener, DDS_DATA_AVAILABLE_STATUS);
    }
    /// A listener that is reading has a loan, and a reader with a loan cannot be deleted.
    ~Trigger() { DDS_DataReader_set_listener(reader_, nullptr, DDS_STATUS_MASK_NONE); }
    Trigger(const Trigger&) = delete;
    Trigger& operator=(const Trigger&) = delete;

    DDS_DomainParticipant* participant() const { return participant_.get(); }
    const std::atomic<int>& samples() const { return samples_; }

private:
    static void on_data_available(void* self, DDS_DataReader* reader) {
        auto* trigger = static_cast<Trigger*>(self);
        // A failure shows as samples that do not come.
        static_cast<void>(tools::take_all<QEL_KX_LogMessage>(
            reader, [&](const QEL_KX_LogMessage&, const DDS_SampleInfo&) {
                trigger->action_();
                ++trigger->samples_;
            }));
    }

    std::function<void()> action_;
    std::atomic<int> samples_{0};
    tools::Participant participant_;
    DDS_DataReader* reader_;
};

/// Writes samples of the trigger topic from a thread of its own.
std::jthread start_triggering(int domain_id) {
    return std::jthread{[domain_id](const std::stop_token& token) {
        const tools::Participant participant = make_participant(domain_id);
        DDS_DataWriter* writer = tools::create_writer(participant.get(), trigger_topic, {});
        char go[] = "go";
        const QEL_KX_LogMessage sample{{1, 2}, QEL_KX_LEVEL_INFO, go, go};
        while (!token.stop_requested()) {
            QEL_KX_LogMessageDataWriter_write(QEL_KX_LogMessageDataWriter_narrow(writer), &sample,
                                              &DDS_HANDLE_NIL);
            std::this_thread::sleep_for(1ms);
        }
    }};
}

void wait_for_more(int more, const std::atomic<int>& counter) {
    for (const int enough = counter + more; counter < enough;) {
        std::this_thread::sleep_for(1ms);
    }
}

std::atomic<Logger*> logger_of_handlers = nullptr;

/// Interrupts the threads again and again with a signal whose handler logs.
std::jthread start_interrupting(Logger& logger, std::array<std::jthread, 8>& threads) {
    logger_of_handlers = &logger;
    struct sigaction action {};
    action.sa_handler = [](int) {
        QEL_KX_Orvane_info(logger_of_handlers.load()->instance(), "from a handler");
    };
    action.sa_flags = SA_RESTART;
    sigaction(SIGUSR1, &action, nullptr);
    return std::jthread{[&](const std::stop_token& token) {
        while (!token.stop_requested()) {
            for (std::jthread& thread : threads) {
                pthread_kill(thread.native_handle(), SIGUSR1);
            }
            std::this_thread::sleep_for(1ms);
        }
    }};
}

/// What a forked child does with its copy of the logger. @return whether it is as it should be
bool use_copy(const Logger& logger) {
    QEL_KX_Orvane_error(logger.instance(), "from a child");
    if (QEL_KX_Orvane_getInstance() != nullptr) {
        return false;
    }
#ifdef ORVANE_ADDRESS_SANITIZER
    // Its heap may be locked in a child by a thread that the child does not have.
    return true;
#else
    return Logger::finish() == DDS_RETCODE_OK;
#endif
}

/// Forks children again and again, which must not hang.
std::jthread start_forking(const Logger& logger) {
    return std::jthread{[&](const std::stop_token& token) {
        while (!token.stop_requested()) {
            const pid_t child = fork();
            if (child == 0) {
                alarm(20);
                _exit(use_copy(logger) ? EXIT_SUCCESS : EXIT_FAILURE);
            }
            int status = 0;
            waitpid(child, &status, 0);
            if (status != 0) {
                std::cerr << "test_peer: a child ended with status " << status << '\n';
                std::exit(EXIT_FAILURE);
            }
            std::this_thread::sleep_for(20ms);
        }
    }};
}

/// @param under_fire waits until the logger has been used in that cycle
void run_cycles(Logger& logger, int cycles, const std::function<OptionsPointer()>& options,
                const std::function<void(int cycle)>& under_fire) {
    for (int cycle = 1; cycle <= cycles; ++cycle) {
        logger.start(options());
        under_fire(cycle);
        if (Logger::finish() != DDS_RETCODE_OK) {
            std::exit(EXIT_FAILURE);
        }
        tell("cycle " + std::to_string(cycle));
    }
}

/// In turn, so that every setting keeps changing.
const tools::Command commands[] = {
    tools::SetFilterLevel{QEL_KX_LEVEL_TRACE},
    tools::SetVerbosities{
        {{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION,
          QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING}}},
    tools::SetPrintFormat{QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL},
    tools::SetFilterLevel{-1},
    tools::SetFilterLevel{QEL_KX_LEVEL_INFO},
    tools::SetPrintFormat{QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT},
};

/// One visit of the mode "visit".
/// @param next_command goes on from visit to visit
/// @return whether a command was answered
bool visit(int domain_id, int& next_command) {
    const auto logs = tools::LogSubscription::open({.id = domain_id});
    std::string failure;
    const auto administration = tools::Administration::open(
        {.id = domain_id}, tools::Administration::Access::command, failure);
    if (!logs || !administration) {
        std::exit(EXIT_FAILURE);
    }
    bool answered = false;
    const auto end = tools::Administration::Clock::now() + 400ms;
    while (tools::Administration::Clock::now() < end) {
        administration->wait(20ms);
        if (const tools::Result<tools::Arrivals> arrivals = administration->take()) {
            for (const tools::CommandResponse& response : arrivals->responses) {
                answered |= response.originator == administration->identity();
            }
        }
        for (const tools::Application& logger : administration->command_readers()) {
            const int number = next_command++;
            // Loggers end at any time: that a command or a message gets lost is no failure.
            static_cast<void>(
                administration->send(logger, number, commands[number % std::ssize(commands)]));
        }
        static_cast<void>(logs->take(true));
    }
    return answered;
}

}  // namespace

void fire_from_threads(int domain_id, int cycles) {
    silence_middleware();
    // Keeps the engine's threads busy, and reporting, while the logger comes and goes.
    const Trigger trigger{domain_id, [] {}};
    Logger logger;
    std::atomic<int> calls{0};
    std::array<std::jthread, 8> threads;
    for (std::jthread& thread : threads) {
        thread = std::jthread{[&](const std::stop_token& token) {
            while (!token.stop_requested()) {
                logger.log(QEL_KX_LEVEL_INFO, "fire", "thread");
                ++calls;
                std::this_thread::sleep_for(200us);
            }
        }};
    }
    const std::jthread forking = start_forking(logger);
    const std::jthread interrupting = start_interrupting(logger, threads);
    const auto options = [&] {
        // Again each time, because remote tools change it.
        report_everything();
        return make_options(domain_id);
    };
    run_cycles(logger, cycles, options, [&](int cycle) {
        // Most instances live for a few milliseconds only. In each tenth there is time for remote
        // tools to find it and to send commands.
        wait_for_more(cycle % 10 == 0 ? 4000 : 400, calls);
    });
}

void fire_from_listener(int domain_id, int cycles) {
    silence_middleware();
    constexpr int samples_per_cycle = 50;
    Logger logger;
    const Trigger trigger{domain_id, [&] { logger.log(QEL_KX_LEVEL_INFO, "fire", "listener"); }};
    // The listener runs in this thread and, for the samples of other processes, in the engine's.
    const std::jthread triggering = start_triggering(domain_id);
    const auto options = [&] {
        OptionsPointer shared = make_options(domain_id);
        QEL_KX_Options_setDomainParticipant(shared.get(), trigger.participant());
        return shared;
    };
    run_cycles(logger, cycles, options,
               [&](int) { wait_for_more(samples_per_cycle, trigger.samples()); });
}

void trigger_until_input_ends(int domain_id) {
    silence_middleware();
    const std::jthread triggering = start_triggering(domain_id);
    tell("triggering");
    std::cin.get();
}

void visit_until_input_ends(int domain_id) {
    std::atomic<bool> over{false};
    const std::jthread input{[&] {
        std::cin.get();
        over = true;
    }};
    bool told = false;
    for (int next_command = 0; !over;) {
        if (visit(domain_id, next_command) && !std::exchange(told, true)) {
            tell("visited");
        }
    }
}

}  // namespace orvane::tests
