// Loggers with credentials that expire, and many that start at once.
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>

#include "tests/integration/programs.hpp"
#include "tests/security/plant.hpp"
#include "tools/domain/entities.hpp"

/// For the leak sanitizer: in a process with two secured participants the engine forgets some bytes
/// of a handshake.
extern "C" __attribute__((visibility("default"))) int __lsan_is_turned_off() {
    return 1;
}

namespace orvane::tests {
namespace {

class SecuredLoggers : public testing::Test {
protected:
    SecuredLoggers() {
        plant_.issue("otto", tools::rights_of(tools::Role::operator_));
        plant_.issue("pump", application_);
    }

    bool is_heard(Application& application) {
        const std::string text = std::to_string(++said_);
        EXPECT_TRUE(application.say(600, "", text)) << application.process().transcript();
        return viewer().wait_until(
            [&](const auto& messages) {
                return std::any_of(messages.begin(), messages.end(),
                                   [&](const auto& message) { return message.text == text; });
            },
            std::chrono::seconds{1});
    }

    /// Waits until it is heard, or until it is not.
    bool comes_to(bool heard, Application& application) {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        while (is_heard(application) != heard && std::chrono::steady_clock::now() < deadline) {
        }
        return std::chrono::steady_clock::now() < deadline;
    }

    Viewer& viewer() {
        if (!viewer_) {
            viewer_ = std::make_unique<Viewer>(Words{"--security", plant_.folder("otto")});
        }
        return *viewer_;
    }

    const std::vector<tools::TopicRight> application_ = tools::rights_of(tools::Role::application);
    Plant plant_;

private:
    std::unique_ptr<Viewer> viewer_;
    int said_ = 0;
};

TEST_F(SecuredLoggers, AreHeardUntilTheirCredentialsExpire) {
    constexpr std::int64_t day = std::int64_t{24} * 3600;
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    plant_.issue("short", application_, {.days = 1, .from = now - day + 10});
    Application lasting{{"--kind", "lasting"}, plant_.launcher(plant_.folder("pump"))};
    Application expiring{{"--kind", "expiring"}, plant_.launcher(plant_.folder("short"))};
    ASSERT_TRUE(comes_to(true, expiring)) << viewer().process().transcript();
    ASSERT_TRUE(comes_to(true, lasting)) << viewer().process().transcript();

    EXPECT_TRUE(comes_to(false, expiring));
    EXPECT_TRUE(is_heard(lasting)) << viewer().process().transcript();
    // The application itself lives on and ends as always.
    EXPECT_FALSE(is_heard(expiring));
    EXPECT_EQ(expiring.ask("finish"), "finish 0");
    expiring.process().close_input();
    EXPECT_EQ(expiring.process().wait_for_end(), "exit 0") << expiring.process().transcript();
}

TEST_F(SecuredLoggers, DoNotFillTheMemoryOfProcessesWithTwoParticipants) {
    const tools::DomainOptions domain{.id = std::stoi(tests::domain()),
                                      .security = plant_.folder("otto")};
    const tools::Participant reading = tools::join_domain(domain);
    const tools::Participant other = tools::join_domain(domain);
    DDS_DataReader* const messages = tools::create_reader<QEL_KX_LogMessage>(
        reading.get(), DDS_TRANSIENT_LOCAL_DURABILITY_QOS, DDS_KEEP_ALL_HISTORY_QOS);
    Application pump{{"--kind", "pump"}, plant_.launcher(plant_.folder("pump"))};
    const std::string text(4000, 'x');
    const auto await_one = [&] {
        bool has_come = false;
        const auto deadline = std::chrono::steady_clock::now() + patience;
        while (!has_come && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
            const auto note = [&](const QEL_KX_LogMessage&, const DDS_SampleInfo& info) {
                has_come = has_come || info.valid_data != 0;
            };
            EXPECT_EQ(tools::take_all<QEL_KX_LogMessage>(messages, note), tools::Status::ok);
        }
        return has_come;
    };
    const auto pass = [&](int count) {
        for (int i = 0; i < count; ++i) {
            ASSERT_TRUE(pump.say(600, "", text) && await_one()) << pump.process().transcript();
        }
    };
    pass(100);
    const std::size_t before = mallinfo2().uordblks;
    constexpr int count = 400;
    pass(count);
    EXPECT_LT(mallinfo2().uordblks, before + count * text.size() / 4);
}

TEST_F(SecuredLoggers, AreAllHeardWhenTheyStartAtOnce) {
    std::vector<std::unique_ptr<Application>> crowd;
    for (int i = 0; i < 10; ++i) {
        const std::string name = "pump-" + std::to_string(i);
        plant_.issue(name, application_);
        crowd.push_back(std::make_unique<Application>(Words{"--kind", name},
                                                      plant_.launcher(plant_.folder(name))));
    }
    for (const auto& application : crowd) {
        EXPECT_TRUE(comes_to(true, *application)) << viewer().process().transcript();
    }
}

}  // namespace
}  // namespace orvane::tests
