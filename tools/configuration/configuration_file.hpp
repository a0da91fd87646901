/// @file configuration_file.hpp
/// @brief A configuration file as the library and the middleware read it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "orvane/xml.h"
#include "tools/configuration/element_check.hpp"
#include "tools/configuration/findings.hpp"

namespace orvane::tools {

/// Reads a file and keeps what is to be said about it. A process makes one at a time.
class ConfigurationFile {
public:
    explicit ConfigurationFile(const std::string& name);

    bool is_well_formed() const;
    /// The element that counts, NULL without one.
    DDS_XMLObject* orvane() const;
    /// The bytes of memory that the queue takes at least; for a file with an `orvane` element.
    std::uint64_t least_queue_memory() const;
    const Findings& findings() const { return findings_; }

private:
    struct Delete {
        void operator()(DDS_XMLExtensionClass* made) const { DDS_XMLExtensionClass_delete(made); }
        void operator()(DDS_XMLParser* parser) const { DDS_XMLParser_delete(parser); }
    };

    void add_faults();
    void add_reports();
    void check_queue_memory();

    std::string name_;
    Findings findings_;
    ElementCheck check_{findings_};
    std::unique_ptr<DDS_XMLExtensionClass, Delete> class_;
    std::unique_ptr<DDS_XMLParser, Delete> parser_;
};

}  // namespace orvane::tools
