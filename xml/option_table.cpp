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
    option_descriptions, row<&QEL_KX_Options::filter_level, FilterLevel>("filter_level"),
    row<&QEL_KX_Options::enabled, TruthValue<>>("enabled"),
    row<&QEL_KX_Options::echo_to_stdout, TruthValue<Layout::AtMargin>>("echo_to_stdout"),
    row<&QEL_KX_Options::log_infrastructure_messages, TruthValue<Layout::AtMargin>>(
        "log_infrastructure_messages"),
    row<&QEL_KX_Options::thread, ThreadSettings>("thread"),
    row<&QEL_KX_Options::queue_size, PositiveNumber<read_queue_size, core::set_queue_size>>(
        "queue_size"),
    row_without_element<&QEL_KX_Options::domain_participant>("domain_participant"),
    row_without_element<&QEL_KX_Options::domain_id>("domain_id"),
    row_without_element<&QEL_KX_Options::application_kind>("application_kind"),
    row_without_element<&QEL_KX_Options::remote_administration_enabled>(
        "remote_administration_enabled"),
    row_without_element<&QEL_KX_Options::qos_library>("qos_library"),
    row_without_element<&QEL_KX_Options::qos_profile>("qos_profile"));

constexpr auto thread_table = table<DDS_ThreadSettings_t>(
    thread_descriptions, row<&DDS_ThreadSettings_t::mask, Setting<read_mask, write_mask>>("mask"),
    row<&DDS_ThreadSettings_t::priority, Setting<read_priority, write_priority>>("priority"),
    row<&DDS_ThreadSettings_t::stack_size, Setting<read_stack_size, write_stack_size>>(
        "stack_size"),
    row<&DDS_ThreadSettings_t::cpu_list, Setting<add_cpu, write_cpus>>("cpu_list"),
    row<&DDS_ThreadSettings_t::cpu_rotation, Setting<read_rotation, write_rotation>>(
        "cpu_rotation"));

static_assert(has_distinct_numbers(option_table, thread_table));

}  // namespace

std::span<const Option<QEL_KX_Options>> options() noexcept {
    return option_table;
}

std::span<const Option<DDS_ThreadSettings_t>> thread_settings() noexcept {
    return thread_table;
}

}  // namespace orvane::xml
