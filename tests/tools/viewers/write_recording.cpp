// Writes a recording of all kinds of events, and prints what an MCAP file has of each: topic,
// schema, time and data.

#include <algorithm>
#include <cstdio>

#include "tests/tools/sample_events.hpp"
#include "tools/recording/mcap_channels.hpp"
#include "tools/recording/recorder.hpp"

int main(int argc, char** argv) {
    using namespace orvane::tools;
    if (argc != 2) {
        return 2;
    }
    const RecordingOptions options{.path = argv[1], .format = *format_of_file(argv[1])};
    int error = 0;
    const auto recorder = Recorder::start(
        options, [](const std::string&) {}, error);
    if (!recorder) {
        return 1;
    }
    const std::vector<RecordedEvent> events = sample_events();
    // Several chunks.
    for (int round = 0; round < 40; ++round) {
        for (const RecordedEvent& event : events) {
            recorder->add({event});
            const McapChannel& channel = mcap_channels[event.index()];
            std::printf("%s %s %lld %s\n", channel.topic.data(), channel.schema_name.data(),
                        static_cast<long long>(std::max<std::int64_t>(time_of(event), 0)),
                        foxglove_json(event).c_str());
        }
    }
    return recorder->stop() == 0 ? 0 : 1;
}
