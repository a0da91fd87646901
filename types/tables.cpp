#include "types/compiled_members.hpp"
#include "types/table_builder.hpp"

const char QEL_KX_ADMIN_StateKindTYPENAME[] = "QEL::KX::ADMIN::StateKind";
const char QEL_KX_ADMIN_CommandKindTYPENAME[] = "QEL::KX::ADMIN::CommandKind";
const char QEL_KX_ADMIN_CommandResultTYPENAME[] = "QEL::KX::ADMIN::CommandResult";
const char QEL_KX_ADMIN_QELLoggerVerbosityTYPENAME[] = "QEL::KX::ADMIN::QELLoggerVerbosity";
const char QEL_KX_ADMIN_QELLoggerCategoryTYPENAME[] = "QEL::KX::ADMIN::QELLoggerCategory";
const char QEL_KX_ADMIN_QELLoggerPrintFormatTYPENAME[] = "QEL::KX::ADMIN::QELLoggerPrintFormat";
const char QEL_KX_HostAndAppIdTYPENAME[] = "QEL::KX::HostAndAppId";
const char QEL_KX_LogMessageTYPENAME[] = "QEL::KX::LogMessage";
const char QEL_KX_ADMIN_QELLoggerCategoryAndVerbosityTYPENAME[] =
    "QEL::KX::ADMIN::QELLoggerCategoryAndVerbosity";
const char QEL_KX_ADMIN_StateTYPENAME[] = "QEL::KX::ADMIN::State";
const char QEL_KX_ADMIN_CommandTYPENAME[] = "QEL::KX::ADMIN::Command";
const char QEL_KX_ADMIN_CommandRequestTYPENAME[] = "QEL::KX::ADMIN::CommandRequest";
const char QEL_KX_ADMIN_CommandResponseTYPENAME[] = "QEL::KX::ADMIN::CommandResponse";
const char QEL_KX_ADMIN_CountTYPENAME[] = "QEL::KX::ADMIN::Count";
const char QEL_KX_ADMIN_ViewerTYPENAME[] = "QEL::KX::ADMIN::Viewer";
const char QEL_KX_ADMIN_StatisticsTYPENAME[] = "QEL::KX::ADMIN::Statistics";

namespace orvane::types {

constexpr TypeTable Description<QEL_KX_ADMIN_StateKind>::table =
    enumeration<QEL_KX_ADMIN_StateKind>(QEL_KX_ADMIN_StateKindTYPENAME);

constexpr TypeTable Description<QEL_KX_ADMIN_CommandKind>::table =
    enumeration<QEL_KX_ADMIN_CommandKind>(QEL_KX_ADMIN_CommandKindTYPENAME);

constexpr TypeTable Description<QEL_KX_ADMIN_CommandResult>::table =
    enumeration<QEL_KX_ADMIN_CommandResult>(QEL_KX_ADMIN_CommandResultTYPENAME);

constexpr TypeTable Description<QEL_KX_ADMIN_QELLoggerVerbosity>::table =
    enumeration<QEL_KX_ADMIN_QELLoggerVerbosity>(QEL_KX_ADMIN_QELLoggerVerbosityTYPENAME);

constexpr TypeTable Description<QEL_KX_ADMIN_QELLoggerCategory>::table =
    enumeration<QEL_KX_ADMIN_QELLoggerCategory>(QEL_KX_ADMIN_QELLoggerCategoryTYPENAME);

constexpr TypeTable Description<QEL_KX_ADMIN_QELLoggerPrintFormat>::table =
    enumeration<QEL_KX_ADMIN_QELLoggerPrintFormat>(QEL_KX_ADMIN_QELLoggerPrintFormatTYPENAME);

constexpr auto host_and_app_id_rows = rows<QEL_KX_HostAndAppId>(
    member<&QEL_KX_HostAndAppId::rtps_host_id>(0, "rtps_host_id", Role::Key),
    member<&QEL_KX_HostAndAppId::rtps_app_id>(1, "rtps_app_id", Role::Key));
constexpr TypeTable Description<QEL_KX_HostAndAppId>::table =
    structure(QEL_KX_HostAndAppIdTYPENAME, DDS_FINAL_EXTENSIBILITY, host_and_app_id_rows);

constexpr auto log_message_rows = rows<QEL_KX_LogMessage>(
    member<&QEL_KX_LogMessage::hostAndAppId>(0, "hostAndAppId", Role::Key),
    member<&QEL_KX_LogMessage::level>(1, "level", Role::Key),
    string<&QEL_KX_LogMessage::category, ORVANE_LOG_CATEGORY_BOUND>(2, "category"),
    string<&QEL_KX_LogMessage::message, ORVANE_LOG_MESSAGE_BOUND>(3, "message"));
constexpr TypeTable Description<QEL_KX_LogMessage>::table =
    structure(QEL_KX_LogMessageTYPENAME, DDS_MUTABLE_EXTENSIBILITY, log_message_rows);

constexpr auto qel_logger_category_and_verbosity_rows =
    rows<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity>(
        member<&QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity::category>(0, "category"),
        member<&QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity::verbosity>(1, "verbosity"));
constexpr TypeTable Description<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity>::table =
    structure(QEL_KX_ADMIN_QELLoggerCategoryAndVerbosityTYPENAME, DDS_FINAL_EXTENSIBILITY,
              qel_logger_category_and_verbosity_rows);

constexpr auto state_rows = rows<QEL_KX_ADMIN_State>(
    member<&QEL_KX_ADMIN_State::hostAndAppId>(0, "hostAndAppId", Role::Key),
    member<&QEL_KX_ADMIN_State::administrationDomainId>(1, "administrationDomainId"),
    member<&QEL_KX_ADMIN_State::state>(2, "state"),
    string<&QEL_KX_ADMIN_State::applicationKind, ORVANE_APPLICATION_KIND_BOUND>(3,
                                                                                "applicationKind"),
    member<&QEL_KX_ADMIN_State::filterLevel>(4, "filterLevel"),
    member<&QEL_KX_ADMIN_State::qelLoggerVerbosities>(5, "qelLoggerVerbosities"),
    member<&QEL_KX_ADMIN_State::qelLoggerPrintFormat>(6, "qelLoggerPrintFormat"));
constexpr TypeTable Description<QEL_KX_ADMIN_State>::table =
    structure(QEL_KX_ADMIN_StateTYPENAME, DDS_MUTABLE_EXTENSIBILITY, state_rows);

constexpr auto command_rows = union_rows<QEL_KX_ADMIN_Command>(
    member<&QEL_KX_ADMIN_Command::_d>(0, "_d"),
    member<&QEL_KX_ADMIN_CommandBranches::filterLevel>(1, "filterLevel"),
    sequence<&QEL_KX_ADMIN_CommandBranches::categoryAndVerbosity, ORVANE_QEL_LOGGER_CATEGORY_COUNT>(
        2, "categoryAndVerbosity"),
    member<&QEL_KX_ADMIN_CommandBranches::printFormat>(3, "printFormat"));
constexpr TypeTable Description<QEL_KX_ADMIN_Command>::table =
    discriminated_union(QEL_KX_ADMIN_CommandTYPENAME, command_rows);

constexpr auto command_request_rows = rows<QEL_KX_ADMIN_CommandRequest>(
    member<&QEL_KX_ADMIN_CommandRequest::targetHostAndAppId>(0, "targetHostAndAppId"),
    member<&QEL_KX_ADMIN_CommandRequest::originatorHostAndAppId>(1, "originatorHostAndAppId"),
    member<&QEL_KX_ADMIN_CommandRequest::invocation>(2, "invocation"),
    member<&QEL_KX_ADMIN_CommandRequest::command>(3, "command"));
constexpr TypeTable Description<QEL_KX_ADMIN_CommandRequest>::table =
    structure(QEL_KX_ADMIN_CommandRequestTYPENAME, DDS_MUTABLE_EXTENSIBILITY, command_request_rows);

constexpr auto command_response_rows = rows<QEL_KX_ADMIN_CommandResponse>(
    member<&QEL_KX_ADMIN_CommandResponse::hostAndAppId>(0, "hostAndAppId", Role::Key),
    member<&QEL_KX_ADMIN_CommandResponse::originatorHostAndAppId>(1, "originatorHostAndAppId"),
    member<&QEL_KX_ADMIN_CommandResponse::invocation>(2, "invocation"),
    member<&QEL_KX_ADMIN_CommandResponse::commandResult>(3, "commandResult"),
    string<&QEL_KX_ADMIN_CommandResponse::message, ORVANE_RESPONSE_MESSAGE_BOUND>(4, "message"));
constexpr TypeTable Description<QEL_KX_ADMIN_CommandResponse>::table = structure(
    QEL_KX_ADMIN_CommandResponseTYPENAME, DDS_MUTABLE_EXTENSIBILITY, command_response_rows);

constexpr auto count_rows = rows<QEL_KX_ADMIN_Count>(member<&QEL_KX_ADMIN_Count::high>(0, "high"),
                                                     member<&QEL_KX_ADMIN_Count::low>(1, "low"));
constexpr TypeTable Description<QEL_KX_ADMIN_Count>::table =
    structure(QEL_KX_ADMIN_CountTYPENAME, DDS_FINAL_EXTENSIBILITY, count_rows);

constexpr auto viewer_rows = rows<QEL_KX_ADMIN_Viewer>(
    member<&QEL_KX_ADMIN_Viewer::host>(0, "host"), member<&QEL_KX_ADMIN_Viewer::app>(1, "app"),
    member<&QEL_KX_ADMIN_Viewer::instance>(2, "instance"),
    member<&QEL_KX_ADMIN_Viewer::entity>(3, "entity"),
    member<&QEL_KX_ADMIN_Viewer::publishedHigh>(4, "publishedHigh"),
    member<&QEL_KX_ADMIN_Viewer::publishedLow>(5, "publishedLow"),
    member<&QEL_KX_ADMIN_Viewer::refusedForRoomHigh>(6, "refusedForRoomHigh"),
    member<&QEL_KX_ADMIN_Viewer::refusedForRoomLow>(7, "refusedForRoomLow"),
    member<&QEL_KX_ADMIN_Viewer::refusedForMemoryHigh>(8, "refusedForMemoryHigh"),
    member<&QEL_KX_ADMIN_Viewer::refusedForMemoryLow>(9, "refusedForMemoryLow"),
    member<&QEL_KX_ADMIN_Viewer::discardedHigh>(10, "discardedHigh"),
    member<&QEL_KX_ADMIN_Viewer::discardedLow>(11, "discardedLow"));
constexpr TypeTable Description<QEL_KX_ADMIN_Viewer>::table =
    structure(QEL_KX_ADMIN_ViewerTYPENAME, DDS_FINAL_EXTENSIBILITY, viewer_rows);

constexpr auto statistics_rows = rows<QEL_KX_ADMIN_Statistics>(
    member<&QEL_KX_ADMIN_Statistics::hostAndAppId>(0, "hostAndAppId", Role::Key),
    member<&QEL_KX_ADMIN_Statistics::logWriter>(1, "logWriter"),
    member<&QEL_KX_ADMIN_Statistics::accepted>(2, "accepted"),
    member<&QEL_KX_ADMIN_Statistics::refusedForRoom>(3, "refusedForRoom"),
    member<&QEL_KX_ADMIN_Statistics::refusedForMemory>(4, "refusedForMemory"),
    member<&QEL_KX_ADMIN_Statistics::published>(5, "published"),
    member<&QEL_KX_ADMIN_Statistics::discarded>(6, "discarded"),
    member<&QEL_KX_ADMIN_Statistics::writeTimeouts>(7, "writeTimeouts"),
    member<&QEL_KX_ADMIN_Statistics::queued>(8, "queued"),
    member<&QEL_KX_ADMIN_Statistics::mostQueued>(9, "mostQueued"),
    member<&QEL_KX_ADMIN_Statistics::queueSize>(10, "queueSize"),
    member<&QEL_KX_ADMIN_Statistics::isLast>(11, "isLast"),
    sequence<&QEL_KX_ADMIN_Statistics::viewers, ORVANE_VIEWER_BOUND>(12, "viewers"));
constexpr TypeTable Description<QEL_KX_ADMIN_Statistics>::table =
    structure(QEL_KX_ADMIN_StatisticsTYPENAME, DDS_MUTABLE_EXTENSIBILITY, statistics_rows);

static_assert(ORVANE_QEL_LOGGER_CATEGORY_COUNT ==
              pexa::enumerator_count<QEL_KX_ADMIN_QELLoggerCategory>);

/** The type codes' members, which their type wants to be changeable. */
template <typename Record>
constinit auto member_codes_of =
    member_codes<coded_members(Description<Record>::table)>(Description<Record>::table);

#define ORVANE_TYPE_CODE(T)                             \
    constinit const DDS_TypeCode Description<T>::code = \
        type_code(Description<T>::table, member_codes_of<T>.data());
ORVANE_TYPES(ORVANE_TYPE_CODE)

}  // namespace orvane::types
