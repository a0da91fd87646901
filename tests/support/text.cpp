#include "tests/support/text.hpp"

#include <charconv>

namespace orvane::test {

namespace {

void set_masks(DDS_UnsignedLong mask) {
    for (const QELLogModule module :
         {QEL_LOG_MODULE_OSAPI, QEL_LOG_MODULE_CDR, QEL_LOG_MODULE_DDS}) {
        QELLog_setInstrumentationMask(module, mask);
    }
}

}  // namespace

Reports::Reports() {
    set_masks(0x1f);
    const auto add = [](void* texts, QELLogModule, QELLogLevel, const char* text) {
        static_cast<std::vector<std::string>*>(texts)->emplace_back(text);
    };
    QELLog_setSink(add, &texts_);
}
Reports::~Reports() {
    QELLog_setSink(nullptr, nullptr);
    set_masks(QEL_LOG_BIT(QEL_LOG_LEVEL_ERROR));
}

Bytes bytes(std::string_view written) {
    Bytes result;
    bool quoted = false;
    for (std::size_t i = 0; i < written.size(); ++i) {
        if (written[i] == '\'') {
            quoted = !quoted;
        } else if (quoted) {
            result.push_back(written[i]);
        } else if (written[i] != ' ') {
            unsigned char byte = 0;
            std::from_chars(&written[i], &written[i] + 2, byte, 16);
            result.push_back(static_cast<char>(byte));
            ++i;
        }
    }
    return result;
}

std::string hexadecimal(const void* data, std::size_t size) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (std::size_t i = 0; i < size; ++i) {
        const auto byte = static_cast<const unsigned char*>(data)[i];
        result += {digits[byte >> 4U], digits[byte & 15U], ' '};
    }
    return result;
}

}  // namespace orvane::test
