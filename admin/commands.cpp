#include "admin/commands.hpp"

#include "admin/logger_bridge.hpp"
#include "admin/state.hpp"
#include "admin/translations.hpp"
#include "core/filter.hpp"
#include "orvane/core.h"
#include "pexa/string.h"

namespace orvane::admin {
namespace {

constexpr const char* process_context = "QEL_KX_Orvane_processCommand";

/// A response that frees its text with its scope, also when its initialisation ran out of memory.
class Response {
public:
    Response() { QEL_KX_ADMIN_CommandResponse_initialize(&sample_); }
    Response(const Response&) = delete;
    Response& operator=(const Response&) = delete;
    ~Response() { QEL_KX_ADMIN_CommandResponse_finalize(&sample_); }

    [[nodiscard]] QEL_KX_ADMIN_CommandResponse& sample() noexcept { return sample_; }

private:
    QEL_KX_ADMIN_CommandResponse sample_{};
};

QEL_KX_ADMIN_CommandResult execute_filter_level(QEL_KX_Orvane& logger, DDS_Long level,
                                                QEL_KX_ADMIN_CommandResponse& response) {
    if (set_filter_level(logger, level) == DDS_RETCODE_OK) {
        return QEL_KX_COMMAND_RESULT_OK;
    }
    constexpr const char* refusal = "Orvane: Trouble setting new Filter Level.";
    // Into the buffer that the response owns and frees.
    DDS_String_copyBounded(response.message, refusal, ORVANE_RESPONSE_MESSAGE_BOUND + 1);
    QEL_KX_Orvane_printMessage(refusal, process_context, QEL_KX_LEVEL_WARNING);
    return QEL_KX_COMMAND_RESULT_ERROR;
}

QEL_KX_ADMIN_CommandResult execute_verbosities(
    QEL_KX_Orvane& logger, QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq& pairs) {
    const DDS_Long count = QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_get_length(&pairs);
    for (DDS_Long index = 0; index < count; ++index) {
        const QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity* const pair =
            QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_get_reference(&pairs, index);
        set_middleware_verbosity(logger,
                                 static_cast<PEXA_Config_LogCategory>(
                                     categories.to_middleware(number_of(pair->category))),
                                 verbosities.to_middleware(number_of(pair->verbosity)));
    }
    return QEL_KX_COMMAND_RESULT_OK;
}

QEL_KX_ADMIN_CommandResult execute(QEL_KX_Orvane& logger, QEL_KX_ADMIN_Command& command,
                                   QEL_KX_ADMIN_CommandResponse& response) {
    switch (number_of(command._d)) {
        case QEL_KX_SET_LOG_LEVEL:
            return execute_filter_level(logger, command._u.filterLevel, response);
        case QEL_KX_SET_QEL_LOGGER_LEVEL:
            return execute_verbosities(logger, command._u.categoryAndVerbosity);
        case QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT:
            // Answered OK all the same: what the middleware took shows in the State.
            static_cast<void>(set_middleware_print_format(
                logger, print_formats.to_middleware(number_of(command._u.printFormat))));
            return QEL_KX_COMMAND_RESULT_OK;
        default:
            return QEL_KX_COMMAND_RESULT_NOT_SUPPORTED;
    }
}

void report_take(const char* text) {
    QEL_KX_Orvane_printMessage(text, "QEL_KX_Orvane_CommandRequestListener_on_data_available",
                               QEL_KX_LEVEL_ERROR);
}

}  // namespace

void take_commands(QEL_KX_Orvane& logger, DDS_DataReader* reader) {
    if (state_kind(logger) != QEL_KX_STATE_OPERATIONAL) {
        return;
    }
    QEL_KX_ADMIN_CommandRequestDataReader* const command_reader =
        QEL_KX_ADMIN_CommandRequestDataReader_narrow(reader);
    if (command_reader == nullptr) {
        report_take("Unable to narrow DataReader");
        return;
    }
    QEL_KX_ADMIN_CommandRequestSeq requests{};
    DDS_SampleInfoSeq infos{};
    const DDS_ReturnCode_t result = QEL_KX_ADMIN_CommandRequestDataReader_take(
        command_reader, &requests, &infos, DDS_LENGTH_UNLIMITED, DDS_ANY_SAMPLE_STATE,
        DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    if (result == DDS_RETCODE_NO_DATA) {
        return;
    }
    if (result != DDS_RETCODE_OK) {
        report_take("Unable to take ComandRequest from DataReader");
        return;
    }
    const DDS_Long count = QEL_KX_ADMIN_CommandRequestSeq_get_length(&requests);
    for (DDS_Long index = 0; index < count; ++index) {
        if (DDS_SampleInfoSeq_get_reference(&infos, index)->valid_data != 0) {
            process_command(logger,
                            *QEL_KX_ADMIN_CommandRequestSeq_get_reference(&requests, index));
        }
    }
    if (QEL_KX_ADMIN_CommandRequestDataReader_return_loan(command_reader, &requests, &infos) !=
        DDS_RETCODE_OK) {
        report_take("Unable to return loan in CommandRequest's DataReader");
    }
}

void process_command(QEL_KX_Orvane& logger, QEL_KX_ADMIN_CommandRequest& request) {
    Response response;
    QEL_KX_ADMIN_CommandResponse& sample = response.sample();
    with_state(logger, [&](const QEL_KX_ADMIN_State& state) {
        QEL_KX_HostAndAppId_copy(&sample.hostAndAppId, &state.hostAndAppId);
    });
    QEL_KX_HostAndAppId_copy(&sample.originatorHostAndAppId, &request.originatorHostAndAppId);
    sample.invocation = request.invocation;
    sample.commandResult = execute(logger, request.command, sample);
    if (QEL_KX_ADMIN_CommandResponseDataWriter_write(
            QEL_KX_DDSEntities_getCommandResponseWriter(logger.ddsEntities), &sample,
            &DDS_HANDLE_NIL) != DDS_RETCODE_OK) {
        QEL_KX_Orvane_printMessage("Unable to write Command Response", process_context,
                                   QEL_KX_LEVEL_ERROR);
    }
}

DDS_ReturnCode_t set_filter_level(QEL_KX_Orvane& logger, DDS_Long level) {
    if (level < 0) {
        return DDS_RETCODE_ERROR;
    }
    bool changed = false;
    with_state(logger, [&](QEL_KX_ADMIN_State& state) {
        // The logging calls read it without the mutex.
        changed =
            std::atomic_ref(logger.filterLevel).exchange(level, std::memory_order_relaxed) != level;
        if (changed) {
            state.filterLevel = level;
            // Before anybody can see the new level in the published State.
            core::refresh_filter();
        }
    });
    if (changed && !write_state(logger)) {
        QEL_KX_Orvane_printMessage("Unable to write State", "QEL_KX_Orvane_setFilterLevel",
                                   QEL_KX_LEVEL_WARNING);
    }
    return DDS_RETCODE_OK;
}

}  // namespace orvane::admin
