/// @file sertype.hpp
/// @brief Cyclone's view of a data type.
#pragma once

#include <dds/ddsi/ddsi_sertype.h>

#include <cstdint>
#include <memory>

#include "platform/engine/cyclone/instance_index.hpp"
#include "platform/engine/type.hpp"

namespace pexa::engine::cyclone {

/// What all domains share of one Type object.
class SharedType {
public:
    /// @return the one of this Type object, made if there is none
    static std::shared_ptr<SharedType> of(std::shared_ptr<const Type> type);

    explicit SharedType(std::shared_ptr<const Type> type);
    SharedType(const SharedType&) = delete;
    SharedType& operator=(const SharedType&) = delete;
    ~SharedType();

    const Type& type() const { return *type_; }
    bool keyed() const { return keyed_; }
    /// Never used again for another one, unlike an address.
    std::uint64_t number() const { return number_; }
    /// Instances keep it alive when topics are gone, for as long as Cyclone knows them.
    const std::shared_ptr<InstanceIndex>& instances() const { return instances_; }

private:
    std::shared_ptr<const Type> type_;
    bool keyed_;
    std::uint64_t number_;
    std::shared_ptr<InstanceIndex> instances_;
};

/// What Cyclone registers for a type in a domain. Cyclone counts the references.
struct Sertype : ddsi_sertype {
    std::shared_ptr<SharedType> shared;
};

inline SharedType& shared_of(const ddsi_sertype* type) {
    return *static_cast<const Sertype*>(type)->shared;
}

/// @return a new Cyclone type with one reference, for dds_create_topic_sertype(). May throw
/// std::bad_alloc.
ddsi_sertype* make_sertype(std::shared_ptr<SharedType> shared);

}  // namespace pexa::engine::cyclone
