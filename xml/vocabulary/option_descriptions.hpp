/// @file option_descriptions.hpp
/// @brief The options of the logger and their XML elements, in words.
///
/// Constants only, so that the tool can use them without the code of the library.
#pragma once

#include <array>

#include "orvane/xml.h"

namespace orvane::xml {

/// How the value of an option is written in a file. The schema has a type for each.
enum class ValueType {
    NoElement,  ///< only the application sets the option
    TruthValue,
    FilterLevel,
    PositiveNumber,
    Mask,
    Priority,
    StackSize,
    CpuList,  ///< numbers, each in an element called `element`
    CpuRotation,
    ThreadSettings,  ///< the children of an element of its own
};

/// What the documentation and `orvane check-config` say about an option.
struct OptionDescription {
    /// Of the element, or of the field when the option has no element.
    const char* name = nullptr;
    ValueType type = ValueType::NoElement;
    QEL_KX_XMLConfigElement number = QEL_KX_XML_ELEMENT_NONE;
    /// A text of the element that is not the default; of an element only.
    const char* example = nullptr;
    /// The text that means the default, NULL without one.
    const char* by_default = nullptr;
    /// In Markdown.
    const char* range = "";
    const char* effect = "";

    constexpr bool has_element() const noexcept { return type != ValueType::NoElement; }
    constexpr bool is_list() const noexcept { return type == ValueType::CpuList; }
};

/// The fields of the options record, in the order in which their elements are written.
inline constexpr std::array option_descriptions{
    OptionDescription{
        .name = "filter_level",
        .type = ValueType::FilterLevel,
        .number = QEL_KX_XML_ELEMENT_FILTER_LEVEL,
        .example = "WARNING",
        .by_default = "INFO",
        .range = "`SILENT`, `FATAL`, `SEVERE`, `ERROR`, `WARNING`, `NOTICE`, `INFO`, `DEBUG`, "
                 "`TRACE`, or a decimal number from 0 on",
        .effect = "Messages of this level and more severe ones are published. Tools can change it "
                  "while the logger runs."},
    OptionDescription{
        .name = "enabled",
        .type = ValueType::TruthValue,
        .number = QEL_KX_XML_ELEMENT_ENABLED,
        .example = "true",
        .by_default = "false",
        .range = "truth value",
        .effect = "The logger is started at all. An options record made by the application is "
                  "enabled."},
    OptionDescription{.name = "echo_to_stdout",
                      .type = ValueType::TruthValue,
                      .number = QEL_KX_XML_ELEMENT_ECHO_TO_STDOUT,
                      .example = "yes",
                      .by_default = "false",
                      .range = "truth value",
                      .effect = "Every message is printed too, also those that the filter stops."},
    OptionDescription{.name = "log_infrastructure_messages",
                      .type = ValueType::TruthValue,
                      .number = QEL_KX_XML_ELEMENT_LOG_INFRASTRUCTURE_MESSAGES,
                      .example = "0",
                      .by_default = "true",
                      .range = "truth value",
                      .effect =
                          "What the middleware itself reports is published like the application's "
                          "messages."},
    OptionDescription{
        .name = "thread", .type = ValueType::ThreadSettings, .number = QEL_KX_XML_ELEMENT_THREAD},
    OptionDescription{
        .name = "queue_size",
        .type = ValueType::PositiveNumber,
        .number = QEL_KX_XML_ELEMENT_QUEUE_SIZE,
        .example = "2000",
        .by_default = "128",
        .range = "1 to 2147483647",
        .effect = "Messages that wait for publication. One more is lost, with a line on standard "
                  "output. Their memory is allocated at the start."},
    OptionDescription{
        .name = "domain_participant",
        .effect = "The logger's participant. `QEL_KX_XMLConfig_startWithXMLConfiguration` sets "
                  "it."},
    OptionDescription{.name = "domain_id",
                      .by_default = "0",
                      .range = "0 to 232",
                      .effect = "Domain of the logger's own participant; unused with another one."},
    OptionDescription{.name = "application_kind",
                      .range = "256 characters",
                      .effect = "Names the kind of application in the published State."},
    OptionDescription{
        .name = "remote_administration_enabled",
        .by_default = "1",
        .range = "0 or 1",
        .effect = "Remote tools may change settings. The logger does not start without it."},
    OptionDescription{.name = "qos_library",
                      .range = "a library that is loaded",
                      .effect = "Where `qos_profile` is found."},
    OptionDescription{.name = "qos_profile",
                      .range = "a profile that is loaded",
                      .effect = "QoS of the logger's entities."}};

/// The fields of @ref QEL_KX_Options::thread, in the order in which their elements are written.
inline constexpr std::array thread_descriptions{
    OptionDescription{
        .name = "mask",
        .type = ValueType::Mask,
        .number = QEL_KX_XML_ELEMENT_MASK,
        .example = "REALTIME_PRIORITY | PRIORITY_ENFORCE",
        .by_default = "MASK_DEFAULT",
        .range = "`MASK_DEFAULT`, or `FLOATING_POINT`, `STDIO`, `REALTIME_PRIORITY`, "
                 "`PRIORITY_ENFORCE` with bars between them",
        .effect = "How the write thread is scheduled. With `PRIORITY_ENFORCE` a priority that the "
                  "system refuses makes the start fail."},
    OptionDescription{
        .name = "priority",
        .type = ValueType::Priority,
        .number = QEL_KX_XML_ELEMENT_PRIORITY,
        .example = "20",
        .by_default = "THREAD_PRIORITY_DEFAULT",
        .range = "a decimal number, or `THREAD_PRIORITY_DEFAULT`; the same is meant by "
                 "`THREAD_PRIORITY_HIGH`, `THREAD_PRIORITY_ABOVE_NORMAL`, "
                 "`THREAD_PRIORITY_NORMAL`, `THREAD_PRIORITY_BELOW_NORMAL`, `THREAD_PRIORITY_LOW`, "
                 "`MAX_PRIORITY`, `NORM_PRIORITY`, `MIN_PRIORITY`",
        .effect = "Priority of the write thread."},
    OptionDescription{.name = "stack_size",
                      .type = ValueType::StackSize,
                      .number = QEL_KX_XML_ELEMENT_STACK_SIZE,
                      .example = "0x40000",
                      .by_default = "THREAD_STACK_SIZE_DEFAULT",
                      .range = "0 to 2147483647, or `THREAD_STACK_SIZE_DEFAULT`",
                      .effect = "Bytes of the write thread's stack."},
    OptionDescription{
        .name = "cpu_list",
        .type = ValueType::CpuList,
        .number = QEL_KX_XML_ELEMENT_CPU_LIST,
        .example = "3",
        .range = "0 to 2147483647",
        .effect = "A CPU for the write thread. The list is kept and written, but no thread is "
                  "bound by it."},
    OptionDescription{.name = "cpu_rotation",
                      .type = ValueType::CpuRotation,
                      .number = QEL_KX_XML_ELEMENT_CPU_ROTATION,
                      .example = "CPU_RR_ROTATION",
                      .by_default = "CPU_NO_ROTATION",
                      .range = "`CPU_NO_ROTATION` or `CPU_RR_ROTATION`",
                      .effect = "How the list is used; see there."}};

}  // namespace orvane::xml
