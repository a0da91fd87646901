/// @file journal_sink.hpp
/// @brief Sends records to the journal of systemd.
#pragma once

#include <memory>
#include <string>

#include "tools/export/export_sink.hpp"

namespace orvane::tools {

/// Each record is a datagram. The longest one has about 20 KiB, because texts on the domain are
/// bounded; a socket takes that.
/// @param path of the journal's socket, which need not be there yet; short enough for a socket
std::unique_ptr<ExportSink> make_journal_sink(const std::string& path);

/// Bytes that the path of a socket may have.
std::size_t longest_socket_path();

}  // namespace orvane::tools
