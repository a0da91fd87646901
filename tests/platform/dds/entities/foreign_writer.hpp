#pragma once

#include <memory>
#include <string>

#include "platform/engine/engine.hpp"
#include "tests/support/text.hpp"

/// @return a type of this name for which the engine takes any payload, or none.
std::shared_ptr<pexa::engine::Type> opaque_type(const std::string& name, bool accepts);

/// A reliable writer that was made with the engine alone, so that it can send any bytes.
class ForeignWriter {
public:
    ForeignWriter(const std::string& topic_name, const std::string& type_name);
    ForeignWriter(const ForeignWriter&) = delete;
    ForeignWriter& operator=(const ForeignWriter&) = delete;
    ~ForeignWriter();

    pexa::engine::EntityId participant() const { return participant_; }
    /// Sends bytes as a sample of an instance.
    void send(const orvane::test::Bytes& payload, const pexa::engine::KeyHash& instance,
              pexa::engine::WriteKind kind = pexa::engine::WriteKind::data) const;

private:
    pexa::engine::EntityId participant_;
    pexa::engine::EntityId writer_ = pexa::engine::no_entity;
};
