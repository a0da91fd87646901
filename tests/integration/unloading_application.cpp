// An application that loads the logging library at run time, and unloads it, twice, while a
// participant of its own keeps the domain alive:
//
//   unloading_application DOMAIN LIBRARY
//       For the Nth pair of lines of its input it loads the library, logs "loaded" and prints
//       "> loaded N"; then it finalises the logger, unloads the library and prints "> unloaded N".

#include <dds/dds.h>
#include <dlfcn.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace {

// The library's types, which this program only passes on.
struct Options;
struct Logger;

class Library {
public:
    explicit Library(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {}
    ~Library() { dlclose(handle_); }

    template <typename Result, typename... Arguments>
    Result call(const char* name, Arguments... arguments) {
        return reinterpret_cast<Result (*)(Arguments...)>(dlsym(handle_, name))(arguments...);
    }

private:
    void* handle_;
};

}  // namespace

int main(int, char** arguments) {
    const int domain = std::stoi(arguments[1]);
    const dds_entity_t participant =
        dds_create_participant(static_cast<dds_domainid_t>(domain), nullptr, nullptr);
    int round = 0;
    for (std::string line; std::getline(std::cin, line);) {
        {
            Library library{arguments[2]};
            auto* const options = library.call<Options*>("QEL_KX_Options_createDefault");
            library.call<int>("QEL_KX_Options_setDomainId", options, domain);
            library.call<bool>("QEL_KX_Orvane_setOptions", options);
            auto* const logger = library.call<Logger*>("QEL_KX_Orvane_getInstance");
            library.call<int>("QEL_KX_Orvane_error", logger, "loaded");
            std::cout << "> loaded " << ++round << std::endl;
            std::getline(std::cin, line);
            library.call<int>("QEL_KX_Orvane_finalizeInstance");
            library.call<int>("QEL_KX_Options_delete", options);
        }
        std::cout << "> unloaded " << round << std::endl;
    }
    return dds_delete(participant) == DDS_RETCODE_OK ? EXIT_SUCCESS : EXIT_FAILURE;
}
