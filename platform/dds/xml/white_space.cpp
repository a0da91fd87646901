#include "platform/dds/xml/white_space.hpp"

#include <cstring>

#include "pexa/xml.h"

namespace pexa::dds::xml {
namespace {

/// Removes the white space at both ends of a text, in place.
char* trim(char* text) {
    if (text != nullptr) {
        const std::string_view rest = trimmed(text);
        std::memmove(text, rest.data(), rest.size());
        text[rest.size()] = '\0';
    }
    return text;
}

}  // namespace
}  // namespace pexa::dds::xml

char* QELXMLHelper_strTrim(char* text) {
    return pexa::dds::xml::trim(text);
}
