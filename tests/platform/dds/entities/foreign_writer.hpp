#pragma once

#include <span>

#include "platform/engine/engine.hpp"
#include "tests/platform/dds/entities/probe_type.hpp"

/// A writer of the Probe type that was made with the engine alone, so that it can send anything.
class ForeignWriter {
public:
    explicit ForeignWriter(const std::string& topic_name);
    ForeignWriter(const ForeignWriter&) = delete;
    ForeignWriter& operator=(const ForeignWriter&) = delete;
    ~ForeignWriter();

    [[nodiscard]] bool await_reader() const;
    /// Sends bytes as a sample of instance @p id.
    void send(DDS_Long id, std::span<const std::byte> payload,
              pexa::engine::WriteKind kind = pexa::engine::WriteKind::data) const;

private:
    pexa::engine::EntityId participant_;
    pexa::engine::EntityId writer_ = pexa::engine::no_entity;
};
