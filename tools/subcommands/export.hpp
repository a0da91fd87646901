/// @file export.hpp
/// @brief `orvane export otlp` and `orvane export journal`: hand logs on to other systems.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/http/http_header.hpp"
#include "tools/http/http_url.hpp"
#include "tools/records/domain_options.hpp"
#include "tools/records/log_query.hpp"

namespace orvane::tools {

struct ExportOptions {
    DomainOptions domain;
    LogQuery query;
    std::optional<double> seconds;        ///< end after so long
    std::uint64_t buffer = 16ULL << 20U;  ///< bytes of records that wait
};

struct OtlpExportOptions {
    ExportOptions common;
    HttpUrl url;
    std::vector<HttpHeader> headers;
    std::string authorities;  ///< file with certificates in PEM; empty for the system's
};

struct JournalExportOptions {
    ExportOptions common;
    std::string socket = "/run/systemd/journal/socket";
};

/// Each sends until its time is over, SIGINT or SIGTERM. @return the process's exit status
/// @{
int export_otlp(const OtlpExportOptions& options);
int export_journal(const JournalExportOptions& options);
/// @}

}  // namespace orvane::tools
