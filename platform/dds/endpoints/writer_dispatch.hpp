/// @file writer_dispatch.hpp
/// @brief From a status change of a writer in the engine to the application's listener.
#pragma once

#include "platform/dds/interface/handle.hpp"
#include "platform/engine/listener.hpp"

namespace pexa::dds {

class WriterDispatch final : public engine::Listener {
public:
    explicit WriterDispatch(DataWriter& writer) : writer_(writer) {}

    void on_status(engine::EntityId id, engine::StatusMask kind,
                   const engine::CommunicationStatus& status) override;

private:
    DataWriter& writer_;
};

}  // namespace pexa::dds
