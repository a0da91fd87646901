/// @file reader_dispatch.hpp
/// @brief From a status change of a reader in the engine to the application's listener.
#pragma once

#include "platform/dds/interface/handle.hpp"
#include "platform/engine/listener.hpp"

namespace pexa::dds {

class ReaderDispatch final : public engine::Listener {
public:
    explicit ReaderDispatch(DataReader& reader) : reader_(reader) {}

    void on_status(engine::EntityId id, engine::StatusMask kind,
                   const engine::CommunicationStatus& status) override;
    void on_data_available(engine::EntityId id) override;

private:
    DataReader& reader_;
};

}  // namespace pexa::dds
