#include "tools/security/roles.hpp"

#include <fnmatch.h>
#include <orvane/admin.h>
#include <orvane/statistics.h>

#include <cstddef>

namespace orvane::tools {
namespace {

std::vector<TopicRight> all_rights(Role role) {
    switch (role) {
        case Role::application:
            return {{Direction::publish,
                     {QEL_KX_LOG_TOPIC_NAME, QEL_KX_STATE_TOPIC_NAME,
                      QEL_KX_COMMAND_RESPONSE_TOPIC_NAME, QEL_KX_STATISTICS_TOPIC_NAME}},
                    {Direction::subscribe, {QEL_KX_COMMAND_REQUEST_TOPIC_NAME}}};
        case Role::viewer:
            return {
                {Direction::subscribe,
                 {QEL_KX_LOG_TOPIC_NAME, QEL_KX_STATE_TOPIC_NAME, QEL_KX_STATISTICS_TOPIC_NAME}}};
        case Role::operator_:
            return {{Direction::publish, {QEL_KX_COMMAND_REQUEST_TOPIC_NAME}},
                    {Direction::subscribe,
                     {QEL_KX_LOG_TOPIC_NAME, QEL_KX_STATE_TOPIC_NAME,
                      QEL_KX_COMMAND_RESPONSE_TOPIC_NAME, QEL_KX_STATISTICS_TOPIC_NAME}}};
    }
    return {};
}

}  // namespace

std::string name_of(Role role) {
    return role_names[static_cast<std::size_t>(role)];
}

std::vector<TopicRight> rights_of(Role role, const std::string& topics) {
    std::vector<TopicRight> rights = all_rights(role);
    for (TopicRight& right : rights) {
        std::erase_if(right.topics, [&](const std::string& topic) {
            return fnmatch(topics.c_str(), topic.c_str(), FNM_NOESCAPE) != 0;
        });
    }
    std::erase_if(rights, [](const TopicRight& right) { return right.topics.empty(); });
    return rights;
}

}  // namespace orvane::tools
