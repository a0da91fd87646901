#include "tests/core/scripted_writer.hpp"

#include <atomic>
#include <chrono>
#include <utility>

namespace orvane::test {
namespace {

constinit std::atomic<ScriptedWriter*> active = nullptr;

}  // namespace

ScriptedWriter::ScriptedWriter(std::vector<DDS_ReturnCode_t> results)
    : results_(std::move(results)) {
    active = this;
}

ScriptedWriter::~ScriptedWriter() {
    active = nullptr;
}

QEL_KX_LogMessageDataWriter* ScriptedWriter::handle() {
    return reinterpret_cast<QEL_KX_LogMessageDataWriter*>(this);
}

std::vector<Written> ScriptedWriter::wait_for(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [&] { return writes_.size() >= count; });
    return writes_;
}

DDS_ReturnCode_t ScriptedWriter::write(const QEL_KX_LogMessage& sample,
                                       const DDS_Time_t& timestamp) {
    if (const auto action = std::exchange(action_, nullptr)) {
        action();
    }
    const std::lock_guard lock(mutex_);
    writes_.push_back(
        {sample.hostAndAppId, sample.level, sample.category, sample.message, timestamp});
    changed_.notify_all();
    return writes_.size() <= results_.size() ? results_[writes_.size() - 1] : DDS_RETCODE_OK;
}

std::vector<std::size_t> ScriptedWriter::wait_for_flushes(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [&] { return flushes_.size() >= count; });
    return flushes_;
}

DDS_ReturnCode_t ScriptedWriter::flush() {
    if (flush_action_) {
        flush_action_(flushes_.size());
    }
    const std::lock_guard lock(mutex_);
    flushes_.push_back(writes_.size());
    changed_.notify_all();
    return DDS_RETCODE_OK;
}

}  // namespace orvane::test

extern "C" {

DDS_ReturnCode_t __real_QEL_KX_LogMessageDataWriter_write_w_timestamp(
    QEL_KX_LogMessageDataWriter* self, const QEL_KX_LogMessage* sample,
    const DDS_InstanceHandle_t* handle, const DDS_Time_t* timestamp);
DDS_ReturnCode_t __wrap_QEL_KX_LogMessageDataWriter_write_w_timestamp(
    QEL_KX_LogMessageDataWriter* self, const QEL_KX_LogMessage* sample,
    const DDS_InstanceHandle_t* handle, const DDS_Time_t* timestamp) {
    orvane::test::ScriptedWriter* scripted = orvane::test::active;
    if (scripted != nullptr && scripted->handle() == self) {
        return scripted->write(*sample, *timestamp);
    }
    return __real_QEL_KX_LogMessageDataWriter_write_w_timestamp(self, sample, handle, timestamp);
}

DDS_ReturnCode_t __real_DDS_DataWriter_flush(DDS_DataWriter* self);
DDS_ReturnCode_t __wrap_DDS_DataWriter_flush(DDS_DataWriter* self) {
    orvane::test::ScriptedWriter* scripted = orvane::test::active;
    if (scripted != nullptr && scripted->handle() == self) {
        return scripted->flush();
    }
    return __real_DDS_DataWriter_flush(self);
}
}
