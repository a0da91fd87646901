#include "admin/entities.hpp"
#include "admin/statistics_entities.hpp"
#include "core/report.hpp"
#include "core/statistics_publication.hpp"
#include "pexa/domain.h"
#include "pexa/osapi.h"
#include "pexa/publication.h"
#include "pexa/subscription.h"

namespace orvane::admin {
namespace {

constexpr const char* delete_context = "QEL_KX_DDSEntities_deleteContainedEntities";

/// Reports failing steps of the teardown and remembers the last one.
class Teardown {
public:
    void note(DDS_ReturnCode_t result, const char* failure) {
        if (result != DDS_RETCODE_OK) {
            core::report(delete_context, failure, QEL_KX_LEVEL_WARNING);
            last_failure_ = result;
        }
    }
    DDS_ReturnCode_t result() const noexcept { return last_failure_; }

private:
    DDS_ReturnCode_t last_failure_ = DDS_RETCODE_OK;
};

/// The names and the factory stay, for the getters; nothing is left that could be deleted again.
void forget_entities(QEL_KX_DDSEntities& entities) {
    QEL_KX_DDSEntities empty{};
    empty.participantFactory = entities.participantFactory;
    empty.rtpsHostId = entities.rtpsHostId;
    empty.rtpsAppId = entities.rtpsAppId;
    empty.qosLibrary = entities.qosLibrary;
    empty.qosProfile = entities.qosProfile;
    entities = empty;
}

}  // namespace

void destroy_entities(QEL_KX_DDSEntities* entities) {
    if (entities == nullptr) {
        return;
    }
    delete_contained_entities(entities);
    QELOsapiHeap_freeStructure(entities);
}

DDS_ReturnCode_t delete_contained_entities(QEL_KX_DDSEntities* entities) {
    if (entities == nullptr) {
        core::report(delete_context, "QEL_KX_DDSEntities is NULL. Cannot delete it again",
                     QEL_KX_LEVEL_WARNING);
        return DDS_RETCODE_OK;
    }
    DDS_DomainParticipant* const participant = entities->participant;
    if (participant == nullptr) {
        return DDS_RETCODE_OK;
    }
    Teardown teardown;
    // Before the writers. It waits for all callbacks, and the one of the State's writer may be
    // writing responses.
    if (entities->subscriber != nullptr) {
        teardown.note(DDS_Subscriber_delete_contained_entities(entities->subscriber),
                      "Unable to delete subscriber's contained entities");
        teardown.note(DDS_DomainParticipant_delete_subscriber(participant, entities->subscriber),
                      "Unable to delete subscriber");
    }
    core::drop_statistics(entities->logMessageWriter);
    if (entities->publisher != nullptr) {
        teardown.note(DDS_Publisher_delete_contained_entities(entities->publisher),
                      "Unable to delete publisher's contained entities");
        teardown.note(DDS_DomainParticipant_delete_publisher(participant, entities->publisher),
                      "Unable to delete publisher");
    }
    if (entities->commandRequestFilteredTopic != nullptr) {
        teardown.note(DDS_DomainParticipant_delete_contentfilteredtopic(
                          participant, entities->commandRequestFilteredTopic),
                      "Unable to delete commandRequest Content Filtered Topic");
    }
    delete_statistics_topic(participant);
    for (DDS_Topic* const topic : entities->createdTopics) {
        if (topic != nullptr) {
            DDS_DomainParticipant_delete_topic(participant, topic);
        }
    }
    if (entities->participantCreated != 0) {
        teardown.note(DDS_DomainParticipant_delete_contained_entities(participant),
                      "Unable to delete contained entities from Domain Participant");
        teardown.note(DDS_DomainParticipantFactory_delete_participant(entities->participantFactory,
                                                                      participant),
                      "Unable to delete participant");
    }
    forget_entities(*entities);
    return teardown.result();
}

}  // namespace orvane::admin

namespace admin = orvane::admin;

void QEL_KX_DDSEntities_destroy(QEL_KX_DDSEntities* entities) {
    admin::destroy_entities(entities);
}

DDS_ReturnCode_t QEL_KX_DDSEntities_deleteContainedEntities(QEL_KX_DDSEntities* entities) {
    return admin::delete_contained_entities(entities);
}
