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

namespace orvane::types {

constexpr TypeTable Description<QEL_KX_ADMIN_StateKind>::table =
    enumeration<QEL_KX_ADMIN_StateKind>(
        QEL_KX_ADMIN_StateKindTYPENAME,
        {{QEL_KX_STATE_INITIALIZING, "QEL_KX_STATE_INITIALIZING"},
         {QEL_KX_STATE_OPERATIONAL, "QEL_KX_STATE_OPERATIONAL"},
         {QEL_KX_STATE_NONOPERATIONAL, "QEL_KX_STATE_NONOPERATIONAL"},
         {QEL_KX_STATE_SHUTTING_DOWN, "QEL_KX_STATE_SHUTTING_DOWN"}});

constexpr TypeTable Description<QEL_KX_ADMIN_CommandKind>::table =
    enumeration<QEL_KX_ADMIN_CommandKind>(
        QEL_KX_ADMIN_CommandKindTYPENAME,
        {{QEL_KX_SET_LOG_LEVEL, "QEL_KX_SET_LOG_LEVEL"},
         {QEL_KX_SET_QEL_LOGGER_LEVEL, "QEL_KX_SET_QEL_LOGGER_LEVEL"},
         {QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT, "QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT"}});

constexpr TypeTable Description<QEL_KX_ADMIN_CommandResult>::table =
    enumeration<QEL_KX_ADMIN_CommandResult>(
        QEL_KX_ADMIN_CommandResultTYPENAME,
        {{QEL_KX_COMMAND_RESULT_OK, "QEL_KX_COMMAND_RESULT_OK"},
         {QEL_KX_COMMAND_RESULT_NOT_SUPPORTED, "QEL_KX_COMMAND_RESULT_NOT_SUPPORTED"},
         {QEL_KX_COMMAND_RESULT_ERROR, "QEL_KX_COMMAND_RESULT_ERROR"}});

constexpr TypeTable Description<QEL_KX_ADMIN_QELLoggerVerbosity>::table =
    enumeration<QEL_KX_ADMIN_QELLoggerVerbosity>(
        QEL_KX_ADMIN_QELLoggerVerbosityTYPENAME,
        {{QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT, "QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT"},
         {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR, "QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR"},
         {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING, "QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING"},
         {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL,
          "QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL"},
         {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE,
          "QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE"},
         {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL,
          "QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL"}});

constexpr TypeTable Description<QEL_KX_ADMIN_QELLoggerCategory>::table =
    enumeration<QEL_KX_ADMIN_QELLoggerCategory>(
        QEL_KX_ADMIN_QELLoggerCategoryTYPENAME,
        {{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM, "QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM"},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION,
          "QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION"},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_DATABASE, "QEL_KX_PEXA_CONFIG_LOG_CATEGORY_DATABASE"},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_ENTITIES, "QEL_KX_PEXA_CONFIG_LOG_CATEGORY_ENTITIES"},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API, "QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API"}});

constexpr TypeTable Description<QEL_KX_ADMIN_QELLoggerPrintFormat>::table = enumeration<
    QEL_KX_ADMIN_QELLoggerPrintFormat>(
    QEL_KX_ADMIN_QELLoggerPrintFormatTYPENAME,
    {{QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT, "QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT"},
     {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_TIMESTAMPED,
      "QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_TIMESTAMPED"},
     {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE, "QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE"},
     {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED,
      "QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED"},
     {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG, "QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG"},
     {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL, "QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL"},
     {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL, "QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL"}});

constexpr TypeTable Description<QEL_KX_HostAndAppId>::table = structure<QEL_KX_HostAndAppId>(
    QEL_KX_HostAndAppIdTYPENAME, DDS_FINAL_EXTENSIBILITY,
    member<&QEL_KX_HostAndAppId::rtps_host_id>(0, "rtps_host_id", Role::Key),
    member<&QEL_KX_HostAndAppId::rtps_app_id>(1, "rtps_app_id", Role::Key));

constexpr TypeTable Description<QEL_KX_LogMessage>::table = structure<QEL_KX_LogMessage>(
    QEL_KX_LogMessageTYPENAME, DDS_MUTABLE_EXTENSIBILITY,
    member<&QEL_KX_LogMessage::hostAndAppId>(0, "hostAndAppId", Role::Key),
    member<&QEL_KX_LogMessage::level>(1, "level", Role::Key),
    string<&QEL_KX_LogMessage::category, ORVANE_LOG_CATEGORY_BOUND>(2, "category"),
    string<&QEL_KX_LogMessage::message, ORVANE_LOG_MESSAGE_BOUND>(3, "message"));

constexpr TypeTable Description<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity>::table =
    structure<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity>(
        QEL_KX_ADMIN_QELLoggerCategoryAndVerbosityTYPENAME, DDS_FINAL_EXTENSIBILITY,
        member<&QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity::category>(0, "category"),
        member<&QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity::verbosity>(1, "verbosity"));

constexpr TypeTable Description<QEL_KX_ADMIN_State>::table = structure<QEL_KX_ADMIN_State>(
    QEL_KX_ADMIN_StateTYPENAME, DDS_MUTABLE_EXTENSIBILITY,
    member<&QEL_KX_ADMIN_State::hostAndAppId>(0, "hostAndAppId", Role::Key),
    member<&QEL_KX_ADMIN_State::administrationDomainId>(1, "administrationDomainId"),
    member<&QEL_KX_ADMIN_State::state>(2, "state"),
    string<&QEL_KX_ADMIN_State::applicationKind, ORVANE_APPLICATION_KIND_BOUND>(3,
                                                                                "applicationKind"),
    member<&QEL_KX_ADMIN_State::filterLevel>(4, "filterLevel"),
    member<&QEL_KX_ADMIN_State::qelLoggerVerbosities>(5, "qelLoggerVerbosities"),
    member<&QEL_KX_ADMIN_State::qelLoggerPrintFormat>(6, "qelLoggerPrintFormat"));

constexpr TypeTable Description<QEL_KX_ADMIN_Command>::table =
    discriminated_union<QEL_KX_ADMIN_Command>(
        QEL_KX_ADMIN_CommandTYPENAME,  //
        member<&QEL_KX_ADMIN_Command::_d>(0, "_d"),
        member<&QEL_KX_ADMIN_CommandBranches::filterLevel>(1, "filterLevel"),
        sequence<&QEL_KX_ADMIN_CommandBranches::categoryAndVerbosity,
                 ORVANE_QEL_LOGGER_CATEGORY_COUNT>(2, "categoryAndVerbosity"),
        member<&QEL_KX_ADMIN_CommandBranches::printFormat>(3, "printFormat"));

constexpr TypeTable Description<QEL_KX_ADMIN_CommandRequest>::table =
    structure<QEL_KX_ADMIN_CommandRequest>(
        QEL_KX_ADMIN_CommandRequestTYPENAME, DDS_MUTABLE_EXTENSIBILITY,
        member<&QEL_KX_ADMIN_CommandRequest::targetHostAndAppId>(0, "targetHostAndAppId"),
        member<&QEL_KX_ADMIN_CommandRequest::originatorHostAndAppId>(1, "originatorHostAndAppId"),
        member<&QEL_KX_ADMIN_CommandRequest::invocation>(2, "invocation"),
        member<&QEL_KX_ADMIN_CommandRequest::command>(3, "command"));

constexpr TypeTable Description<QEL_KX_ADMIN_CommandResponse>::table =
    structure<QEL_KX_ADMIN_CommandResponse>(
        QEL_KX_ADMIN_CommandResponseTYPENAME, DDS_MUTABLE_EXTENSIBILITY,
        member<&QEL_KX_ADMIN_CommandResponse::hostAndAppId>(0, "hostAndAppId", Role::Key),
        member<&QEL_KX_ADMIN_CommandResponse::originatorHostAndAppId>(1, "originatorHostAndAppId"),
        member<&QEL_KX_ADMIN_CommandResponse::invocation>(2, "invocation"),
        member<&QEL_KX_ADMIN_CommandResponse::commandResult>(3, "commandResult"),
        string<&QEL_KX_ADMIN_CommandResponse::message, ORVANE_RESPONSE_MESSAGE_BOUND>(4,
                                                                                      "message"));

/** The type codes' members, which their type wants to be changeable. */
template <typename Record>
constinit std::array<DDS_TypeCodeMember, table_capacity> member_codes_of =
    member_codes(Description<Record>::table);

#define ORVANE_TYPE_CODE(T)                             \
    constinit const DDS_TypeCode Description<T>::code = \
        type_code(Description<T>::table, member_codes_of<T>.data());
ORVANE_TYPES(ORVANE_TYPE_CODE)

}  // namespace orvane::types
