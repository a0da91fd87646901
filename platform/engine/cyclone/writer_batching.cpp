#include "platform/engine/cyclone/writer_batching.hpp"

#ifdef PEXA_CYCLONE_HAS_BATCHING_POLICY

namespace pexa::engine::cyclone {

dds_entity_t create_batching(const ddsi_sertype*, dds_qos_t* qos,
                             FunctionRef<dds_entity_t()> create) {
    dds_qset_writer_batching(qos, true);
    return create();
}

void end_batching_window() {}

}  // namespace pexa::engine::cyclone

#else

#include <mutex>

#include "platform/engine/cyclone/domain_record.h"

namespace pexa::engine::cyclone {

namespace {

// Two windows at once would each put back what the other one has set.
constinit std::mutex window_mutex;

class Window {
public:
    explicit Window(const ddsi_sertype* type)
        : domain_(static_cast<ddsi_domaingv*>(ddsrt_atomic_ldvoidp(&type->gv))),
          lock_(window_mutex),
          before_(pexa_cyclone_begin_batching(domain_)) {
        open_ = this;
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() { end(); }

    static void end_open_one() {
        if (open_ != nullptr) {
            open_->end();
        }
    }

private:
    void end() {
        if (!lock_.owns_lock()) {
            return;
        }
        open_ = nullptr;
        pexa_cyclone_end_batching(domain_, before_);
        lock_.unlock();
    }

    /// Of this thread.
    static constinit thread_local Window* open_;

    ddsi_domaingv* domain_;
    std::unique_lock<std::mutex> lock_;
    int before_;
};

constinit thread_local Window* Window::open_ = nullptr;

}  // namespace

dds_entity_t create_batching(const ddsi_sertype* type, dds_qos_t*,
                             FunctionRef<dds_entity_t()> create) {
    const Window window(type);
    return create();
}

void end_batching_window() {
    Window::end_open_one();
}

}  // namespace pexa::engine::cyclone

#endif
