#include "tools/records/recorded_event.hpp"

namespace orvane::tools {
namespace {

std::size_t text_size(const Logger& logger) {
    return logger.kind.size() + logger.host.size() + logger.process.size();
}

struct SizeOfTexts {
    std::size_t operator()(const MessageEvent& event) const {
        // The messages of a publisher share what is said of it.
        return text_size(event.logger) + event.record.category.size() + event.record.message.size();
    }
    std::size_t operator()(const LossEvent& event) const { return text_size(event.logger); }
    std::size_t operator()(const LoggerEvent& event) const {
        return text_size(event.logger) + event.change.before.kind.size() +
               event.change.now.kind.size();
    }
    std::size_t operator()(const RecordingGap& /*event*/) const { return 0; }
};

}  // namespace

std::size_t memory_of(const RecordedEvent& event) {
    return sizeof event + std::visit(SizeOfTexts{}, event);
}

}  // namespace orvane::tools
