#include "types/plugin.hpp"

using orvane::types::PluginOperations;

#define DEFINE_PLUGIN(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                               \
        return PluginOperations<T>::operation arguments;                   \
    }
#define DEFINE_ENCODING(T) ORVANE_ENCODING_OPERATIONS(DEFINE_PLUGIN, T)
#define DEFINE_OPERATIONS(T)                        \
    TULVTypePlugin* T##Plugin_new() {               \
        return PluginOperations<T>::make();         \
    }                                               \
    void T##Plugin_delete(TULVTypePlugin* plugin) { \
        orvane::types::delete_plugin(plugin);       \
    }                                               \
    ORVANE_PLUGIN_OPERATIONS(DEFINE_PLUGIN, T)
#define DEFINE_KEY_OPERATIONS(T) ORVANE_PLUGIN_KEY_OPERATIONS(DEFINE_PLUGIN, T)

extern "C" {

ORVANE_TYPES(DEFINE_ENCODING)
ORVANE_STRUCTURES(DEFINE_OPERATIONS)
ORVANE_KEYED_TYPES(DEFINE_KEY_OPERATIONS)

}  // extern "C"
