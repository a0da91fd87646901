#include "xml/option_table.hpp"

#include "xml/filter_level.hpp"
#include "xml/option_rows.hpp"
#include "xml/text_numbers.hpp"
#include "xml/thread_settings.hpp"
#include "xml/values.hpp"
#include "xml/writer.hpp"

namespace orvane::xml {
namespace {

constexpr auto option_table = table<QEL_KX_Options>(
    row<&QEL_KX_Options::filter_level, FilterLevel>(
        {.name = "filter_level",
         .number = QEL_KX_XML_ELEMENT_FILTER_LEVEL,
         .example = "WARNING",
         .by_default = "INFO",
         .range = "`SILENT`, `FATAL`, `SEVERE`, `ERROR`, `WARNING`, `NOTICE`, `INFO`, `DEBUG`, "
                  "`TRACE`, or a number from 0 on",
         .effect = "Messages of this level and more severe ones are published. Tools can change it "
                   "while the logger runs."}),
    row<&QEL_KX_Options::enabled, TruthValue<>>(
        {.name = "enabled",
         .number = QEL_KX_XML_ELEMENT_ENABLED,
         .example = "true",
         .by_default = "false",
         .range = "truth value",
         .effect = "The logger is started at all. An options record made by the application is "
                   "enabled."}),
    row<&QEL_KX_Options::echo_to_stdout, TruthValue<Layout::AtMargin>>(
        {.name = "echo_to_stdout",
         .number = QEL_KX_XML_ELEMENT_ECHO_TO_STDOUT,
         .example = "yes",
         .by_default = "false",
         .range = "truth value",
         .effect = "Every message is printed too, also those that the filter stops."}),
    row<&QEL_KX_Options::log_infrastructure_messages, TruthValue<Layout::AtMargin>>(
        {.name = "log_infrastructure_messages",
         .number = QEL_KX_XML_ELEMENT_LOG_INFRASTRUCTURE_MESSAGES,
         .example = "0",
         .by_default = "true",
         .range = "truth value",
         .effect = "What the middleware itself reports is published like the application's "
                   "messages."}),
    row<&QEL_KX_Options::thread, ThreadSettings>(
        {.name = "thread", .number = QEL_KX_XML_ELEMENT_THREAD}),
    row<&QEL_KX_Options::queue_size, PositiveNumber<read_queue_size, core::set_queue_size>>(
        {.name = "queue_size",
         .number = QEL_KX_XML_ELEMENT_QUEUE_SIZE,
         .example = "2000",
         .by_default = "128",
         .range = "1 to 2147483647",
         .effect = "Messages that wait for publication. One more is lost, with a line on standard "
                   "output. Their memory is allocated at the start."}),
    row_without_element<&QEL_KX_Options::domain_participant>(
        {.name = "domain_participant",
         .effect = "The logger's participant. `QEL_KX_XMLConfig_startWithXMLConfiguration` sets "
                   "it."}),
    row_without_element<&QEL_KX_Options::domain_id>(
        {.name = "domain_id",
         .by_default = "0",
         .range = "0 to 232",
         .effect = "Domain of the logger's own participant; unused with another one."}),
    row_without_element<&QEL_KX_Options::application_kind>(
        {.name = "application_kind",
         .range = "256 characters",
         .effect = "Names the kind of application in the published State."}),
    row_without_element<&QEL_KX_Options::remote_administration_enabled>(
        {.name = "remote_administration_enabled",
         .by_default = "1",
         .range = "0 or 1",
         .effect = "Remote tools may change settings. The logger does not start without it."}),
    row_without_element<&QEL_KX_Options::qos_library>({.name = "qos_library",
                                                       .range = "a library that is loaded",
                                                       .effect = "Where `qos_profile` is found."}),
    row_without_element<&QEL_KX_Options::qos_profile>({.name = "qos_profile",
                                                       .range = "a profile that is loaded",
                                                       .effect = "QoS of the logger's entities."}));

constexpr auto thread_table = table<DDS_ThreadSettings_t>(
    row<&DDS_ThreadSettings_t::mask, Setting<ValueType::Mask, read_mask, write_mask>>(
        {.name = "mask",
         .number = QEL_KX_XML_ELEMENT_MASK,
         .example = "REALTIME_PRIORITY | PRIORITY_ENFORCE",
         .by_default = "MASK_DEFAULT",
         .range = "`FLOATING_POINT`, `STDIO`, `REALTIME_PRIORITY`, `PRIORITY_ENFORCE` with bars "
                  "between them",
         .effect = "How the write thread is scheduled. With `PRIORITY_ENFORCE` a priority that the "
                   "system refuses makes the start fail."}),
    row<&DDS_ThreadSettings_t::priority,
        Setting<ValueType::Priority, read_priority, write_priority>>(
        {.name = "priority",
         .number = QEL_KX_XML_ELEMENT_PRIORITY,
         .example = "20",
         .by_default = "THREAD_PRIORITY_DEFAULT",
         .range = "any number; the names of priorities all mean the default",
         .effect = "Priority of the write thread."}),
    row<&DDS_ThreadSettings_t::stack_size,
        Setting<ValueType::StackSize, read_stack_size, write_stack_size>>(
        {.name = "stack_size",
         .number = QEL_KX_XML_ELEMENT_STACK_SIZE,
         .example = "0x40000",
         .by_default = "THREAD_STACK_SIZE_DEFAULT",
         .range = "0 to 2147483647",
         .effect = "Bytes of the write thread's stack."}),
    row<&DDS_ThreadSettings_t::cpu_list, Setting<ValueType::CpuList, add_cpu, write_cpus>>(
        {.name = "cpu_list",
         .number = QEL_KX_XML_ELEMENT_CPU_LIST,
         .example = "3",
         .range = "0 to 2147483647",
         .effect = "A CPU for the write thread. The list is kept and written, but no thread is "
                   "bound by it."}),
    row<&DDS_ThreadSettings_t::cpu_rotation,
        Setting<ValueType::CpuRotation, read_rotation, write_rotation>>(
        {.name = "cpu_rotation",
         .number = QEL_KX_XML_ELEMENT_CPU_ROTATION,
         .example = "CPU_RR_ROTATION",
         .by_default = "CPU_NO_ROTATION",
         .range = "these two",
         .effect = "How the list is used; see there."}));

static_assert(has_distinct_numbers(option_table, thread_table));

}  // namespace

std::span<const Option<QEL_KX_Options>> options() noexcept {
    return option_table;
}

std::span<const Option<DDS_ThreadSettings_t>> thread_settings() noexcept {
    return thread_table;
}

}  // namespace orvane::xml
