/// @file element_check.hpp
/// @brief Reading an `orvane` element by the library, with a finding for each thing that it
/// refuses, ignores, or takes for another thing.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "orvane/xml.h"
#include "tools/configuration/findings.hpp"

namespace orvane::tools {

/// Stands between a parser and the library while a document is parsed.
class ElementCheck {
public:
    /// @param findings must outlive the check
    explicit ElementCheck(Findings& findings) : findings_(findings) {}
    ElementCheck(const ElementCheck&) = delete;
    ElementCheck& operator=(const ElementCheck&) = delete;
    ~ElementCheck() = default;

    /// The class of `orvane` elements, whose objects are the library's. @return NULL without
    /// memory; to be deleted before the check.
    DDS_XMLExtensionClass* make_class();

    /// The line of an element in the `orvane` element that counts, 0 if it is not there.
    int line_of(QEL_KX_XMLConfigElement element) const { return first_lines_[element]; }

private:
    using Lines = std::array<int, QEL_KX_XML_ELEMENT_LOG_INFRASTRUCTURE_MESSAGES + 1>;

    /// User data of the class; the library finds its own at the beginning.
    struct UserData {
        XMLConfigListener listener;
        ElementCheck* check;
    };

    static ElementCheck& of(DDS_XMLObject* object);
    static void on_start(DDS_XMLObject* object, const char* tag_name, const char* const* attributes,
                         DDS_XMLContext* context);
    static void on_end(DDS_XMLObject* object, const char* tag_name, const char* text,
                       DDS_XMLContext* context);

    void start(QEL_KX_XMLConfig& config, const std::string& name, const char* const* attributes,
               DDS_XMLContext* context);
    void end(QEL_KX_XMLConfig& config, const std::string& name, const std::string& text,
             DDS_XMLContext* context);
    void start_orvane();
    void end_orvane();
    void check_attributes(const std::string& name, const char* const* attributes);
    void check_unknown(const std::string& name);
    void check_place(const std::string& name, DDS_UnsignedLong before, DDS_UnsignedLong after);
    void check_repetition(const std::string& name, DDS_UnsignedLong element);
    void check_text(const std::string& name, const std::string& text);
    void error(const std::string& element, std::string text);
    void warn(const std::string& element, std::string text);

    Findings& findings_;
    UserData user_data_{};
    int line_ = 0;
    /// The names of the open elements, from `orvane` on.
    std::vector<std::string> open_;
    /// How many `orvane` elements have begun.
    int count_ = 0;
    int first_orvane_line_ = 0;
    /// Where the children of the open `orvane` element and of the first one were seen last.
    Lines lines_{};
    Lines first_lines_{};
};

}  // namespace orvane::tools
