// A program of another DDS product that has credentials, and a logger that has.
#include <algorithm>

#include "tests/integration/programs.hpp"
#include "tests/security/plant.hpp"

namespace orvane::tests {
namespace {

bool has_read(const Output& output, const std::string& topic, const std::string& bytes = "") {
    return std::any_of(output.out.begin(), output.out.end(), [&](const std::string& line) {
        return line.starts_with(topic + ' ') && line.find(bytes) != std::string::npos;
    });
}

TEST(SecuredPeer, ReadsWhatItMayRead) {
    const Plant plant;
    plant.issue("pump", tools::rights_of(tools::Role::application));
    plant.issue("otto", tools::rights_of(tools::Role::operator_));
    plant.issue("stranger", tools::rights_of(tools::Role::operator_), {.authority = "elsewhere"});

    ChildProcess stranger{{ORVANE_PEER, domain(), plant.folder("stranger", "elsewhere")}};
    ChildProcess nobody{{ORVANE_PEER, domain()}};
    Application application{{"--kind", "pump"}, plant.launcher(plant.folder("pump"))};
    ASSERT_TRUE(application.say(300, "", "valve"));
    ChildProcess otto{{ORVANE_PEER, domain(), plant.folder("otto")}};
    struct {
        const char* topic;
        const char* bytes;
    } const samples[] = {{"log", "76616c7665"}, {"state", "70756d70"}};
    for (const auto& sample : samples) {
        EXPECT_TRUE(otto.wait_until([&](const Output& output) {
            return has_read(output, sample.topic, sample.bytes);
        })) << sample.topic
            << otto.transcript();
        for (ChildProcess* other : {&stranger, &nobody}) {
            EXPECT_FALSE(has_read(other->output(), sample.topic)) << other->transcript();
        }
    }
}

}  // namespace
}  // namespace orvane::tests
