/// @file filtered_topic.hpp
/// @brief Topics that let a part of the samples through.
#pragma once

#include <mutex>
#include <vector>

#include "platform/dds/filter/content_filter.hpp"
#include "platform/dds/topics/topic.hpp"

namespace pexa::dds {

/// A view of a topic through a filter. The engine gets its topic with the first reader.
class FilteredTopic final : public TopicDescription {
public:
    using Handle = DDS_ContentFilteredTopic;

    FilteredTopic(const char* name, Topic& related, const char* expression);
    ~FilteredTopic() override;

    /// Compiles the expression with new parameters and lets it decide from now on.
    /// @param parameters NULL for none
    /// @return BAD_PARAMETER after a report, the old filter staying
    Status set_parameters(const Operation& operation, const DDS_StringSeq* parameters);
    Status get_parameters(DDS_StringSeq& parameters) const;
    const char* expression() const { return expression_.c_str(); }
    Topic* related_topic() const { return &related_; }
    TopicDescription* as_description() { return this; }
    const char* topic_name() const override { return related_.name(); }

    Result<engine::EntityId> engine_topic(const Operation& operation) override;

    Status close(const Operation& operation);

private:
    Topic& related_;
    HeldTopic held_topic_{related_};
    std::string expression_;
    /// Guards the members below, and the engine's topic while it is made and changed.
    mutable std::mutex mutex_;
    std::vector<std::string> parameters_;
    engine::ContentFilter filter_;
    engine::EntityId id_ = engine::no_entity;
};

}  // namespace pexa::dds
