// Stands in for the journal of systemd: prints the fields of each entry that comes to its socket, a
// line for each field and an empty line behind an entry.
// usage: journal PATH

#include <sys/socket.h>
#include <sys/un.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace {

/// Cuts a field from the front of an entry. @return its name and value, empty for a wrong one
std::string cut_field(std::string_view& entry) {
    const std::size_t end = entry.find('\n');
    std::string field{entry.substr(0, end)};
    entry.remove_prefix(end == std::string_view::npos ? entry.size() : end + 1);
    if (field.find('=') != std::string::npos) {
        return field;
    }
    std::uint64_t size = 0;
    if (entry.size() <= sizeof size) {
        return "";
    }
    std::memcpy(&size, entry.data(), sizeof size);
    entry.remove_prefix(sizeof size);
    if (size >= entry.size() || entry[size] != '\n') {
        return "";
    }
    field += '=';
    for (const char each : entry.substr(0, size)) {
        field += each == '\n' ? "\\n" : std::string(1, each);
    }
    entry.remove_prefix(size + 1);
    return field;
}

}  // namespace

int main(int argc, char** argv) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (argc != 2 || std::strlen(argv[1]) >= sizeof address.sun_path) {
        return 2;
    }
    std::strcpy(static_cast<char*>(address.sun_path), argv[1]);
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM, 0);
    if (bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        return 1;
    }
    std::string bytes(1U << 16U, '\0');
    while (true) {
        const ssize_t size = recv(descriptor, bytes.data(), bytes.size(), 0);
        std::string_view entry{bytes.data(), static_cast<std::size_t>(size < 0 ? 0 : size)};
        while (!entry.empty()) {
            std::puts(cut_field(entry).c_str());
        }
        std::puts("");
        std::fflush(stdout);
    }
}
