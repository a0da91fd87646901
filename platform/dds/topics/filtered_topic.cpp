#include "platform/dds/topics/filtered_topic.hpp"

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/interface/string_list.hpp"

namespace pexa::dds {

FilteredTopic::FilteredTopic(const char* name, Topic& related, const char* expression)
    : TopicDescription(*related.participant(), name, related.type()),
      related_(related),
      expression_(expression) {}

FilteredTopic::~FilteredTopic() {
    if (id_ != engine::no_entity) {
        static_cast<void>(engine::delete_entity(id_));
    }
}

DDS_ReturnCode_t FilteredTopic::set_parameters(const Operation& operation,
                                               const DDS_StringSeq* parameters) {
    if (type()->type_code() == nullptr) {
        return operation.bad_parameter("the topic's type has no type code to filter by");
    }
    FilterFault fault;
    std::shared_ptr<const ContentFilter> filter =
        ContentFilter::compile(*type()->type_code(), expression_, parameters, fault);
    if (filter == nullptr) {
        return operation.bad_parameter(fault.text.data());
    }
    const auto decide = [filter = std::move(filter)](std::span<const std::byte> payload) {
        return filter->matches(payload);
    };
    std::vector<std::string> texts = to_strings(parameters);
    engine::ContentFilter for_engine = decide;
    const std::lock_guard guard(mutex_);
    if (id_ != engine::no_entity) {
        const Status status = engine::set_content_filter(id_, decide);
        if (status != Status::ok) {
            return operation.failed("changing the filter", to_return_code(status));
        }
    }
    filter_ = std::move(for_engine);
    parameters_ = std::move(texts);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t FilteredTopic::get_parameters(DDS_StringSeq& parameters) const {
    const std::lock_guard guard(mutex_);
    return store_strings(parameters_, parameters);
}

engine::EntityId FilteredTopic::engine_topic(const Operation& operation) {
    const std::lock_guard guard(mutex_);
    if (id_ == engine::no_entity && related_.enabled() != 0) {
        const engine::Created created = related_.create_filtered(filter_);
        if (!created) {
            static_cast<void>(
                operation.not_created("filtered topic", to_return_code(created.status)));
        }
        id_ = created.entity;
    }
    return id_;
}

DDS_ReturnCode_t FilteredTopic::close(const Operation& operation) {
    const std::lock_guard guard(mutex_);
    if (id_ != engine::no_entity) {
        const Status status = engine::delete_entity(id_);
        if (status != Status::ok) {
            return operation.failed("deletion", to_return_code(status));
        }
        id_ = engine::no_entity;
    }
    use_.end();
    return DDS_RETCODE_OK;
}

}  // namespace pexa::dds
