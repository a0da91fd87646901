#include "core/statistics_publication.hpp"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>

#include "core/report.hpp"
#include "core/statistics.hpp"
#include "pexa/publication.h"
#include "types/plugin_support.hpp"
#include "types/typed_writer.hpp"

namespace orvane::core {
namespace {

using Clock = std::chrono::steady_clock;
using Writer = types::DataWriter<QEL_KX_ADMIN_Statistics>;
using Sample = types::PluginSupport<QEL_KX_ADMIN_Statistics>;

constexpr std::chrono::seconds period{1};

QEL_KX_ADMIN_Count to_count(DDS_UnsignedLongLong number) noexcept {
    return {static_cast<DDS_Long>(number >> 32U), static_cast<DDS_Long>(number)};
}

/// Four bytes of an entity's GUID, most significant first.
DDS_Long guid_word(const DDS_InstanceHandle_t& entity, std::size_t index) noexcept {
    DDS_UnsignedLong word = 0;
    for (std::size_t i = 0; i < sizeof word; ++i) {
        word = word << 8U | entity.keyHash.value[index * sizeof word + i];
    }
    return static_cast<DDS_Long>(word);
}

/// The readers that came last. The engine's threads add them, the write thread publishes them.
struct Viewers {
    std::mutex mutex;
    QEL_KX_ADMIN_Viewer last[ORVANE_VIEWER_BOUND] = {};
    std::size_t count = 0;
};
constinit Viewers viewers;

/// Of the write thread; before and behind that of who makes and ends the logger.
struct Publication {
    QEL_KX_ADMIN_StatisticsDataWriter* writer = nullptr;
    const DDS_DataWriter* log_writer = nullptr;
    QEL_KX_ADMIN_Statistics* sample = nullptr;
    QEL_KX_Statistics last{};
    std::size_t viewers = 0;
    Clock::time_point next;
    bool has_failed = false;
};
constinit Publication publication;

/// @return how many viewers there have been.
std::size_t viewer_count() noexcept {
    const std::lock_guard lock(viewers.mutex);
    return viewers.count;
}

/// @return how many viewers there have been.
std::size_t copy_viewers(QEL_KX_ADMIN_ViewerSeq& sequence) {
    const std::lock_guard lock(viewers.mutex);
    const std::size_t length = std::min<std::size_t>(viewers.count, ORVANE_VIEWER_BOUND);
    QEL_KX_ADMIN_ViewerSeq_from_array(&sequence, viewers.last, static_cast<DDS_Long>(length));
    return viewers.count;
}

bool has_changed(const QEL_KX_Statistics& now) {
    const QEL_KX_Statistics& last = publication.last;
    return now.accepted != last.accepted || now.refusedForRoom != last.refusedForRoom ||
           now.refusedForMemory != last.refusedForMemory || now.published != last.published ||
           now.discarded != last.discarded || now.writeTimeouts != last.writeTimeouts;
}

void send() {
    QEL_KX_ADMIN_Statistics& sample = *publication.sample;
    // No viewer begins with numbers beyond those that are sent.
    publication.viewers = copy_viewers(sample.viewers);
    const QEL_KX_Statistics now = read_statistics();
    sample.accepted = to_count(now.accepted);
    sample.refusedForRoom = to_count(now.refusedForRoom);
    sample.refusedForMemory = to_count(now.refusedForMemory);
    sample.published = to_count(now.published);
    sample.discarded = to_count(now.discarded);
    sample.writeTimeouts = to_count(now.writeTimeouts);
    sample.queued = now.queued;
    sample.mostQueued = now.mostQueued;
    sample.queueSize = now.queueSize;
    publication.last = now;
    publication.next = Clock::now() + period;
    const bool fails =
        Writer::write(publication.writer, &sample, &DDS_HANDLE_NIL) != DDS_RETCODE_OK;
    if (fails && !publication.has_failed) {
        report("QEL_KX_Statistics_publish", "Unable to write Statistics", QEL_KX_LEVEL_WARNING);
    }
    publication.has_failed = fails;
}

void free_publication() {
    if (publication.sample != nullptr) {
        Sample::destroy_data(publication.sample);
    }
    publication = Publication{};
}

}  // namespace

void forget_viewers() noexcept {
    const std::lock_guard lock(viewers.mutex);
    viewers.count = 0;
}

Outcome begin_statistics(QEL_KX_ADMIN_StatisticsDataWriter* writer, DDS_DataWriter* log_writer,
                         const QEL_KX_HostAndAppId& logger) {
    free_publication();
    publication.sample = Sample::create_data();
    if (publication.sample == nullptr) {
        return Outcome::failed("Unable to initialize QEL_KX_ADMIN_Statistics");
    }
    publication.sample->hostAndAppId = logger;
    publication.sample->logWriter =
        guid_word(DDS_Entity_get_instance_handle(DDS_DataWriter_as_entity(log_writer)), 3);
    publication.writer = writer;
    publication.log_writer = log_writer;
    send();
    return Outcome::done();
}

void note_viewer(const DDS_InstanceHandle_t& reader) noexcept {
    const QEL_KX_Statistics now = read_statistics();
    const QEL_KX_ADMIN_Count published = to_count(now.published);
    const QEL_KX_ADMIN_Count refused_for_room = to_count(now.refusedForRoom);
    const QEL_KX_ADMIN_Count refused_for_memory = to_count(now.refusedForMemory);
    const QEL_KX_ADMIN_Count discarded = to_count(now.discarded);
    const QEL_KX_ADMIN_Viewer viewer{.host = guid_word(reader, 0),
                                     .app = guid_word(reader, 1),
                                     .instance = guid_word(reader, 2),
                                     .entity = guid_word(reader, 3),
                                     .publishedHigh = published.high,
                                     .publishedLow = published.low,
                                     .refusedForRoomHigh = refused_for_room.high,
                                     .refusedForRoomLow = refused_for_room.low,
                                     .refusedForMemoryHigh = refused_for_memory.high,
                                     .refusedForMemoryLow = refused_for_memory.low,
                                     .discardedHigh = discarded.high,
                                     .discardedLow = discarded.low};
    const std::lock_guard lock(viewers.mutex);
    const QEL_KX_ADMIN_Viewer* begin = viewers.last;
    const auto* end = begin + std::min<std::size_t>(viewers.count, ORVANE_VIEWER_BOUND);
    // A reader that was lost and came back should have had everything in between.
    const bool is_known = std::any_of(begin, end, [&](const QEL_KX_ADMIN_Viewer& known) {
        return known.host == viewer.host && known.app == viewer.app &&
               known.instance == viewer.instance && known.entity == viewer.entity;
    });
    if (!is_known) {
        viewers.last[viewers.count++ % ORVANE_VIEWER_BOUND] = viewer;
    }
}

void publish_changed_statistics(const QEL_KX_MessageQueue& queue) {
    if (!is_counted(queue) || publication.writer == nullptr || Clock::now() < publication.next) {
        return;
    }
    if (has_changed(read_statistics()) || viewer_count() != publication.viewers) {
        send();
    }
}

void end_statistics() {
    if (publication.writer != nullptr) {
        publication.sample->isLast = 1;
        send();
    }
    free_publication();
}

void drop_statistics(const DDS_DataWriter* log_writer) {
    if (publication.log_writer == log_writer) {
        free_publication();
    }
}

void forget_statistics() noexcept {
    std::construct_at(&viewers);
    publication.writer = nullptr;
}

}  // namespace orvane::core
