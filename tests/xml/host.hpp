#pragma once

#include "orvane/core.h"
#include "pexa/domain.h"

namespace orvane::test {

/// What a host keeps: a participant, which ends behind the logger. It ends before the options.
class Host {
public:
    Host()
        : participant_(DDS_DomainParticipantFactory_create_participant(
              DDS_DomainParticipantFactory_get_instance(), ORVANE_TEST_DOMAIN, DDS_QOS_DEFAULT,
              nullptr, DDS_STATUS_MASK_NONE)) {}
    ~Host() {
        QEL_KX_Orvane_finalizeInstance();
        QEL_KX_Orvane_setOptions(nullptr);
        DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                        participant_);
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    [[nodiscard]] DDS_DomainParticipant* participant() const { return participant_; }

private:
    DDS_DomainParticipant* participant_;
};

}  // namespace orvane::test
