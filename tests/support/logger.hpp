// Options and loggers for the length of a scope, and the middleware's logger.
#pragma once

#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "orvane/admin.h"
#include "orvane/core.h"
#include "orvane/statistics.h"
#include "pexa/config_logger.h"
#include "pexa/string.h"
#include "tests/support/node.hpp"

namespace orvane::test {

inline PEXA_Config_Logger* middleware() {
    return PEXA_Config_Logger_get_instance();
}
inline PEXA_Config_LogVerbosity verbosity_of(int category) {
    return PEXA_Config_Logger_get_verbosity_by_category(
        middleware(), static_cast<PEXA_Config_LogCategory>(category));
}

/// Makes participants that are created from now on ask for statistics, or not.
inline void ask_for_statistics(const char* value) {
    DDS_DomainParticipantQos qos;
    DDS_DomainParticipantQos_initialize(&qos);
    ASSERT_EQ(DDS_DomainParticipantFactory_get_default_participant_qos(Node::factory(), &qos),
              DDS_RETCODE_OK);
    const DDS_Long count = value != nullptr ? 1 : 0;
    ASSERT_NE(DDS_PropertySeq_ensure_length(&qos.property.value, count, count), 0);
    if (value != nullptr) {
        DDS_Property_t* property = DDS_PropertySeq_get_reference(&qos.property.value, 0);
        DDS_String_replace(&property->name, QEL_KX_STATISTICS_PROPERTY);
        DDS_String_replace(&property->value, value);
    }
    EXPECT_EQ(DDS_DomainParticipantFactory_set_default_participant_qos(Node::factory(), &qos),
              DDS_RETCODE_OK);
    DDS_DomainParticipantQos_finalize(&qos);
}

/// Waits for the statistics with which a logger ends.
inline Received<QEL_KX_ADMIN_Statistics> last_statistics(DDS_DataReader* reader) {
    while (true) {
        auto taken = take<QEL_KX_ADMIN_Statistics>(reader, 1);
        if (taken.empty() || taken.back().sample->isLast != 0) {
            return taken.empty() ? Received<QEL_KX_ADMIN_Statistics>{} : std::move(taken.back());
        }
    }
}

struct DeleteOptions {
    void operator()(QEL_KX_Options* options) const { QEL_KX_Options_delete(options); }
};
using Options = std::unique_ptr<QEL_KX_Options, DeleteOptions>;

/// @return options of a logger in the domain of the test.
inline Options make_options() {
    Options options(QEL_KX_Options_createDefault());
    QEL_KX_Options_setDomainId(options.get(), domain());
    return options;
}

/// The instance of the process, from its creation to its finalisation.
class RunningLogger {
public:
    explicit RunningLogger(Options options = make_options()) : options_(std::move(options)) {
        EXPECT_EQ(QEL_KX_Orvane_setOptions(options_.get()), 1);
        logger_ = QEL_KX_Orvane_getInstance();
        EXPECT_NE(logger_, nullptr);
    }
    ~RunningLogger() { QEL_KX_Orvane_finalizeInstance(); }

    QEL_KX_Orvane* operator->() const { return logger_; }
    QEL_KX_Orvane* get() const { return logger_; }
    QEL_KX_Options* options() const { return options_.get(); }

private:
    Options options_;
    QEL_KX_Orvane* logger_;
};

/// A record of a logger with options and a State, and entities when they are asked for. It is not
/// the instance and has no write thread.
class BareLogger {
public:
    explicit BareLogger(Options options = make_options()) : options_(std::move(options)) {
        record_.options = options_.get();
        record_.state = state_.get();
        record_.filterLevel = options_->filter_level;
    }
    ~BareLogger() { QEL_KX_DDSEntities_destroy(record_.ddsEntities); }

    bool make_entities() {
        record_.ddsEntities = QEL_KX_DDSEntities_create(&record_);
        return record_.ddsEntities != nullptr;
    }

    QEL_KX_Orvane* operator->() { return &record_; }
    QEL_KX_Orvane* get() { return &record_; }
    QEL_KX_Options* options() const { return options_.get(); }
    QEL_KX_DDSEntities* entities() const { return record_.ddsEntities; }

private:
    Options options_;
    Sample<QEL_KX_ADMIN_State> state_ = make_sample<QEL_KX_ADMIN_State>();
    QEL_KX_Orvane record_ = {};
};

}  // namespace orvane::test
