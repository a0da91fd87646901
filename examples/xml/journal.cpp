// Logs each line of its standard input, as an XML file says:
//
//     some_program | journal journal.xml [domain]
//
// It shows the steps of a host with an XML configuration: read the file, pick the QoS profile,
// start the logger with a participant of its own, and keep the tree until the logger has ended.
#include <orvane/orvane.h>
#include <pexa/pexa.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

namespace {

using namespace std::chrono_literals;

struct Delete {
    void operator()(DDS_XMLExtensionClass* made) const {
        QEL_KX_XMLConfig_destroyXMLExtensionClass(made);
    }
    void operator()(DDS_XMLParser* parser) const { DDS_XMLParser_delete(parser); }
    void operator()(DDS_DomainParticipant* participant) const {
        DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                        participant);
    }
};

/// An XML file with an `orvane` element; the options live as long as the object.
class Configuration {
public:
    explicit Configuration(const char* file_name)
        : orvane_(QEL_KX_XMLConfig_createXMLExtensionClass(DDS_XMLParser_report_error)),
          parser_(DDS_XMLParser_new()) {
        // The middleware's log names the errors, with file and line.
        DDS_XMLParser_register_extension_class(parser_.get(), orvane_.get());
        DDS_XMLParser_parse_file(parser_.get(), file_name);
        QEL_KX_XMLConfig* element =
            QEL_KX_XMLConfig_getXMLConfigFromXMLRoot(DDS_XMLParser_get_root(parser_.get()));
        if (element != nullptr && DDS_XMLParser_has_failed(parser_.get()) == DDS_BOOLEAN_FALSE) {
            options_ = QEL_KX_XMLConfig_getKXOptions(element);
        }
    }

    /// NULL when the file is of no use.
    QEL_KX_Options* options() const { return options_; }

private:
    std::unique_ptr<DDS_XMLExtensionClass, Delete> orvane_;
    std::unique_ptr<DDS_XMLParser, Delete> parser_;
    QEL_KX_Options* options_ = nullptr;
};

bool use_profile(QEL_KX_Options* options, const char* file_name) {
    return DDS_DomainParticipantFactory_load_qos_profiles(
               DDS_DomainParticipantFactory_get_instance(), file_name) == DDS_RETCODE_OK &&
           QEL_KX_Options_setQosLibrary(options, "journal") == DDS_RETCODE_OK &&
           QEL_KX_Options_setQosProfile(options, "nothing_gets_lost") == DDS_RETCODE_OK;
}

/// Messages that still wait for the write thread.
int waiting() {
    QEL_KX_MessageQueue* queue = QEL_KX_Orvane_getMessageQueue();
    QELOsapiSemaphore_take(queue->mutex, nullptr);
    const int count = queue->list.count;
    QELOsapiSemaphore_give(queue->mutex);
    return count;
}

int log_input() {
    int logged = 0;
    for (std::string line; std::getline(std::cin, line); ++logged) {
        QEL_KX_Orvane_logMessageWithLevelCategory(QEL_KX_Orvane_getInstance(), QEL_KX_LEVEL_INFO,
                                                  line.c_str(), "journal");
    }
    return logged;
}

}  // namespace

int main(int argc, char** argv) {
    const char* file_name = argc > 1 ? argv[1] : "journal.xml";
    const long domain_id = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 0;

    const Configuration configuration{file_name};
    QEL_KX_Options* options = configuration.options();
    if (options == nullptr || !use_profile(options, file_name)) {
        std::fprintf(stderr, "journal: cannot be configured from %s\n", file_name);
        return EXIT_FAILURE;
    }
    const std::unique_ptr<DDS_DomainParticipant, Delete> participant{
        DDS_DomainParticipantFactory_create_participant(
            DDS_DomainParticipantFactory_get_instance(), static_cast<DDS_DomainId_t>(domain_id),
            DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE)};
    if (QEL_KX_XMLConfig_startWithXMLConfiguration(participant.get(), options, "journal") ==
            DDS_BOOLEAN_FALSE ||
        QEL_KX_Orvane_isOrvaneRunning() == 0) {
        return EXIT_FAILURE;
    }

    const int logged = log_input();
    // Finalising discards the messages that are still queued.
    for (int i = 0; i < 300 && waiting() > 0; ++i) {
        std::this_thread::sleep_for(100ms);
    }
    const int discarded = waiting();
    QEL_KX_Orvane_finalizeInstance();
    std::printf("logged %d, discarded %d\n", logged, discarded);
    return discarded == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
