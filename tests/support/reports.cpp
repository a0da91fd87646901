#include "tests/support/reports.hpp"

#include <utility>

namespace {

constexpr QELLogModule modules[] = {QEL_LOG_MODULE_OSAPI, QEL_LOG_MODULE_CDR, QEL_LOG_MODULE_DDS};

void set_masks(DDS_UnsignedLong mask) {
    for (const QELLogModule module : modules) {
        QELLog_setInstrumentationMask(module, mask);
    }
}

}  // namespace

Reports::Reports() {
    set_masks(0x1f);
    QELLog_setSink(add, this);
}

Reports::~Reports() {
    QELLog_setSink(nullptr, nullptr);
    set_masks(QEL_LOG_BIT(QEL_LOG_LEVEL_ERROR));
}

std::vector<std::string> Reports::take() {
    return std::exchange(texts_, {});
}

void Reports::add(void* self, QELLogModule /*module*/, QELLogLevel /*level*/, const char* text) {
    static_cast<Reports*>(self)->texts_.emplace_back(text);
}
