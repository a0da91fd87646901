#include "admin/commands.hpp"

#include "admin/command_response.hpp"
#include "admin/entities.hpp"
#include "admin/logger_bridge.hpp"
#include "admin/state.hpp"
#include "admin/translations.hpp"
#include "core/exported.hpp"
#include "core/filter.hpp"
#include "core/instance.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "orvane/core.h"
#include "platform/internal/number_of.hpp"
#include "platform/internal/sequence_define.hpp"
#include "types/table.hpp"
#include "types/typed_reader.hpp"
#include "types/value_operations.hpp"

namespace orvane::admin {
namespace {

constexpr const char* process_context = "QEL_KX_Orvane_processCommand";
constexpr const char* take_context = "QEL_KX_Orvane_CommandRequestListener_on_data_available";

using CommandReader = types::DataReader<QEL_KX_ADMIN_CommandRequest>;
using Identity = types::ValueOperations<QEL_KX_HostAndAppId>;

/// Calls @p action with the elements of a sequence and their numbers.
template <typename Element, typename Sequence, typename Action>
void for_each_element(Sequence& typed, Action action) {
    PEXASequence* const sequence = pexa::any_sequence(&typed);
    const PEXASequenceElement* const element = &types::Description<Element>::sequence_element;
    const DDS_Long count = PEXASequence_get_length(sequence, element);
    for (DDS_Long index = 0; index < count; ++index) {
        action(*static_cast<Element*>(PEXASequence_get_reference(sequence, element, index)), index);
    }
}

QEL_KX_ADMIN_CommandResult execute_filter_level(QEL_KX_Orvane& logger, DDS_Long level,
                                                QEL_KX_ADMIN_CommandResponse& response) {
    if (set_filter_level(logger, level) == pexa::Status::ok) {
        return QEL_KX_COMMAND_RESULT_OK;
    }
    static char refusal[] = "Orvane: Trouble setting new Filter Level.";
    response.message = refusal;
    core::report(process_context, refusal, QEL_KX_LEVEL_WARNING);
    return QEL_KX_COMMAND_RESULT_ERROR;
}

QEL_KX_ADMIN_CommandResult execute_verbosities(
    QEL_KX_Orvane& logger, QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq& pairs) {
    for_each_element<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity>(
        pairs, [&](const QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity& pair, DDS_Long) {
            set_middleware_verbosity(logger,
                                     static_cast<PEXA_Config_LogCategory>(
                                         categories.to_middleware(pexa::number_of(pair.category))),
                                     verbosities.to_middleware(pexa::number_of(pair.verbosity)));
        });
    return QEL_KX_COMMAND_RESULT_OK;
}

QEL_KX_ADMIN_CommandResult execute(QEL_KX_Orvane& logger, QEL_KX_ADMIN_Command& command,
                                   QEL_KX_ADMIN_CommandResponse& response) {
    constexpr const types::TypeTable& kinds = types::Description<QEL_KX_ADMIN_CommandKind>::table;
    // A number of no enumerator must not be read as an enumerator.
    if (!kinds.has_enumerator(pexa::number_of(command._d))) {
        return QEL_KX_COMMAND_RESULT_NOT_SUPPORTED;
    }
    switch (command._d) {
        case QEL_KX_SET_LOG_LEVEL:
            return execute_filter_level(logger, command._u.filterLevel, response);
        case QEL_KX_SET_QEL_LOGGER_LEVEL:
            return execute_verbosities(logger, command._u.categoryAndVerbosity);
        case QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT:
            // The response is OK in any case. The State shows the format in force.
            static_cast<void>(set_middleware_print_format(
                logger, print_formats.to_middleware(pexa::number_of(command._u.printFormat)),
                no_wait));
            return QEL_KX_COMMAND_RESULT_OK;
    }
    return QEL_KX_COMMAND_RESULT_NOT_SUPPORTED;
}

}  // namespace

void take_commands(QEL_KX_Orvane& logger, DDS_DataReader* reader) {
    if (core::state_kind(logger) != QEL_KX_STATE_OPERATIONAL) {
        return;
    }
    DDS_DataReader* const command_reader = CommandReader::narrow(reader);
    if (command_reader == nullptr) {
        core::report(take_context, "Unable to narrow DataReader");
        return;
    }
    QEL_KX_ADMIN_CommandRequestSeq requests{};
    DDS_SampleInfoSeq infos{};
    const DDS_ReturnCode_t result = CommandReader::read_or_take(
        command_reader, &requests, &infos, DDS_LENGTH_UNLIMITED, DDS_ANY_SAMPLE_STATE,
        DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE, DDS_BOOLEAN_TRUE);
    if (result == DDS_RETCODE_NO_DATA) {
        return;
    }
    if (result != DDS_RETCODE_OK) {
        core::report(take_context, "Unable to take ComandRequest from DataReader");
        return;
    }
    for_each_element<QEL_KX_ADMIN_CommandRequest>(
        requests, [&](QEL_KX_ADMIN_CommandRequest& request, DDS_Long index) {
            if (DDS_SampleInfoSeq_get_reference(&infos, index)->valid_data != 0) {
                process_command(logger, request);
            }
        });
    if (CommandReader::return_loan(command_reader, &requests, &infos) != DDS_RETCODE_OK) {
        core::report(take_context, "Unable to return loan in CommandRequest's DataReader");
    }
}

void process_command(QEL_KX_Orvane& logger, QEL_KX_ADMIN_CommandRequest& request) {
    // What a listener of this process does on this thread meanwhile is published after the
    // response.
    const KeptTurn turn(logger);
    static char no_message[] = "";
    PendingResponse response{
        field_of<&QEL_KX_DDSEntities::commandResponseWriter>(logger.ddsEntities), {}};
    QEL_KX_ADMIN_CommandResponse& sample = response.sample;
    sample.message = no_message;
    with_state(logger, [&](const QEL_KX_ADMIN_State& state) {
        Identity::copy(&sample.hostAndAppId, &state.hostAndAppId);
    });
    Identity::copy(&sample.originatorHostAndAppId, &request.originatorHostAndAppId);
    sample.invocation = request.invocation;
    sample.commandResult = execute(logger, request.command, sample);
    respond_in_turn(logger, response);
}

pexa::Status set_filter_level(QEL_KX_Orvane& logger, DDS_Long level) {
    if (level < 0) {
        return pexa::Status::error;
    }
    publish_change(
        logger,
        [&](QEL_KX_ADMIN_State& state) {
            // The logging calls read it without the mutex.
            const bool changed =
                std::atomic_ref(logger.filterLevel).exchange(level, std::memory_order_relaxed) !=
                level;
            if (changed) {
                state.filterLevel = level;
                // Before anybody can see the new level in the published State.
                core::refresh_filter();
            }
            return changed;
        },
        {"QEL_KX_Orvane_setFilterLevel", "Unable to write State"});
    return pexa::Status::ok;
}

}  // namespace orvane::admin

namespace admin = orvane::admin;

void QEL_KX_Orvane_CommandRequestListener_on_data_available(void* logger, DDS_DataReader* reader) {
    admin::take_commands(*static_cast<QEL_KX_Orvane*>(logger), reader);
}

void QEL_KX_Orvane_processCommand(QEL_KX_Orvane* logger, QEL_KX_ADMIN_CommandRequest* request) {
    admin::process_command(*logger, *request);
}

DDS_ReturnCode_t QEL_KX_Orvane_setFilterLevel(QEL_KX_Orvane* logger, DDS_Long level) {
    return orvane::core::to_return_code(admin::set_filter_level(*logger, level));
}
