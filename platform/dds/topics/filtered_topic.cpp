#include "platform/dds/topics/filtered_topic.hpp"

#include "platform/dds/interface/string_list.hpp"

namespace pexa::dds {

FilteredTopic::FilteredTopic(const char* name, Topic& related, const char* expression)
    : TopicDescription(*related.participant(), name, related.type()),
      related_(related),
      expression_(expression) {}

FilteredTopic::~FilteredTopic() {
    if (id_ != engine::no_entity) {
        // Nothing can be done here about an entity that stays.
        static_cast<void>(engine::delete_entity(id_));
    }
}

Status FilteredTopic::set_parameters(const Operation& operation, const DDS_StringSeq* parameters) {
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
            return operation.failed("changing the filter", status);
        }
    }
    filter_ = std::move(for_engine);
    parameters_ = std::move(texts);
    return Status::ok;
}

Status FilteredTopic::get_parameters(DDS_StringSeq& parameters) const {
    const std::lock_guard guard(mutex_);
    return store_strings(parameters_, parameters);
}

Result<engine::EntityId> FilteredTopic::engine_topic(const Operation& operation) {
    const std::lock_guard guard(mutex_);
    if (id_ == engine::no_entity && related_.enabled()) {
        const engine::Created created = related_.create_filtered(filter_);
        if (!created) {
            return operation.not_created("filtered topic", created.status);
        }
        id_ = created.entity;
    }
    return result_of(id_);
}

Status FilteredTopic::close(const Operation& operation) {
    const std::lock_guard guard(mutex_);
    if (id_ != engine::no_entity) {
        const Status status = engine::delete_entity(id_);
        if (status != Status::ok) {
            return operation.failed("deletion", status);
        }
        id_ = engine::no_entity;
    }
    held_topic_.release();
    return Status::ok;
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_TopicDescription* DDS_ContentFilteredTopic_as_topicdescription(DDS_ContentFilteredTopic* self) {
    return dds::call(__func__, self, &dds::FilteredTopic::as_description);
}

const char* DDS_ContentFilteredTopic_get_filter_expression(DDS_ContentFilteredTopic* self) {
    return dds::call(__func__, self, &dds::FilteredTopic::expression);
}

DDS_ReturnCode_t DDS_ContentFilteredTopic_get_expression_parameters(DDS_ContentFilteredTopic* self,
                                                                    DDS_StringSeq* parameters) {
    return dds::call(__func__, self, &dds::FilteredTopic::get_parameters,
                     dds::required("parameters", parameters));
}

DDS_ReturnCode_t DDS_ContentFilteredTopic_set_expression_parameters(
    DDS_ContentFilteredTopic* self, const DDS_StringSeq* parameters) {
    return dds::call(__func__, self, &dds::FilteredTopic::set_parameters, parameters);
}

DDS_Topic* DDS_ContentFilteredTopic_get_related_topic(DDS_ContentFilteredTopic* self) {
    return dds::call(__func__, self, &dds::FilteredTopic::related_topic);
}
