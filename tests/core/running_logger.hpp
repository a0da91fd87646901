#pragma once

#include "core/shared_field.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"

namespace orvane::test {

/// Options for a logger in the domain of this test.
class TestOptions {
public:
    TestOptions() : options_(QEL_KX_Options_createDefault()) {
        QEL_KX_Options_setDomainId(options_, ORVANE_TEST_DOMAIN);
    }
    ~TestOptions() { QEL_KX_Options_delete(options_); }
    TestOptions(const TestOptions&) = delete;
    TestOptions& operator=(const TestOptions&) = delete;

    QEL_KX_Options* operator->() { return options_; }
    QEL_KX_Options* get() { return options_; }

private:
    QEL_KX_Options* options_;
};

/// Keeps the verbosities of the middleware's logger, which a failed creation does not restore.
class KeptVerbosities {
public:
    KeptVerbosities() {
        for (DDS_Long i = 0; i < PEXA_CONFIG_LOG_CATEGORY_COUNT; ++i) {
            saved_[i] = PEXA_Config_Logger_get_verbosity_by_category(
                PEXA_Config_Logger_get_instance(), static_cast<PEXA_Config_LogCategory>(i));
        }
    }
    ~KeptVerbosities() { QEL_KX_Orvane_unmaskSystemVerbosity(saved_); }
    KeptVerbosities(const KeptVerbosities&) = delete;
    KeptVerbosities& operator=(const KeptVerbosities&) = delete;

    [[nodiscard]] const PEXA_Config_LogVerbosity* saved() const { return saved_; }

private:
    PEXA_Config_LogVerbosity saved_[PEXA_CONFIG_LOG_CATEGORY_COUNT] = {};
};

/// Finalises the instance, if there is one, at the end of its life.
struct Finalisation {
    Finalisation() = default;
    ~Finalisation() { QEL_KX_Orvane_finalizeInstance(); }
    Finalisation(const Finalisation&) = delete;
    Finalisation& operator=(const Finalisation&) = delete;
};

inline PEXA_Config_LogVerbosity verbosity_of(DDS_Long category) {
    return PEXA_Config_Logger_get_verbosity_by_category(
        PEXA_Config_Logger_get_instance(), static_cast<PEXA_Config_LogCategory>(category));
}

}  // namespace orvane::test
