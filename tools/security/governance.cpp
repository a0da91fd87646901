#include "tools/security/governance.hpp"

#include <fmt/format.h>

#include <pugixml.hpp>

namespace orvane::tools {

std::string governance_xml(const std::vector<DomainRange>& domains) {
    std::string ranges;
    for (const DomainRange& range : domains) {
        ranges += fmt::format("        <id_range><min>{}</min><max>{}</max></id_range>\n",
                              range.first, range.last);
    }
    // Some products ask for this order.
    return fmt::format(R"(<?xml version="1.0" encoding="UTF-8"?>
<dds>
  <domain_access_rules>
    <domain_rule>
      <domains>
{}      </domains>
      <allow_unauthenticated_participants>false</allow_unauthenticated_participants>
      <enable_join_access_control>true</enable_join_access_control>
      <discovery_protection_kind>ENCRYPT</discovery_protection_kind>
      <liveliness_protection_kind>ENCRYPT</liveliness_protection_kind>
      <rtps_protection_kind>SIGN</rtps_protection_kind>
      <topic_access_rules>
        <topic_rule>
          <topic_expression>*</topic_expression>
          <enable_discovery_protection>true</enable_discovery_protection>
          <enable_liveliness_protection>true</enable_liveliness_protection>
          <enable_read_access_control>true</enable_read_access_control>
          <enable_write_access_control>true</enable_write_access_control>
          <metadata_protection_kind>NONE</metadata_protection_kind>
          <data_protection_kind>ENCRYPT</data_protection_kind>
        </topic_rule>
      </topic_access_rules>
    </domain_rule>
  </domain_access_rules>
</dds>
)",
                       ranges);
}

std::vector<DomainRange> governed_domains(std::string_view xml) {
    pugi::xml_document document;
    document.load_buffer(xml.data(), xml.size());
    std::vector<DomainRange> domains;
    for (const pugi::xml_node rule :
         document.child("dds").child("domain_access_rules").children("domain_rule")) {
        for (const pugi::xml_node element : rule.child("domains").children()) {
            const bool is_range = element.name() == std::string_view{"id_range"};
            const pugi::xml_node first = is_range ? element.child("min") : element;
            const pugi::xml_node last = is_range ? element.child("max") : element;
            domains.push_back({first.text().as_int(), last.text().as_int()});
        }
    }
    return domains;
}

}  // namespace orvane::tools
