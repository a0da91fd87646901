/* A plug-in for access control that a dishonest program would use: the engine's own, but it allows
   everything to the program itself. With INTRUDER_PERMISSIONS it shows others that file instead of
   the permissions that it has. */
#include <dds/ddsrt/dynlib.h>
#include <dds/ddsrt/heap.h>
#include <dds/ddsrt/string.h>
#include <dds/security/dds_security_api.h>
#include <stdio.h>
#include <stdlib.h>

typedef dds_security_access_control Plugin;
typedef DDS_Security_PermissionsHandle Handle;
typedef DDS_Security_SecurityException Exception;

static void* function_of_engine(const char* name) {
    ddsrt_dynlib_t library = NULL;
    void* function = NULL;
    if (ddsrt_dlopen("dds_security_ac", true, &library) != DDS_RETCODE_OK ||
        ddsrt_dlsym(library, name, &function) != DDS_RETCODE_OK) {
        abort();
    }
    return function;
}

static DDS_Security_boolean allow_participant(Plugin* plugin, Handle handle,
                                              DDS_Security_DomainId domain,
                                              const DDS_Security_Qos* qos, Exception* exception) {
    (void)plugin, (void)handle, (void)domain, (void)qos, (void)exception;
    return true;
}

static DDS_Security_boolean allow_topic(Plugin* plugin, Handle handle, DDS_Security_DomainId domain,
                                        const DDS_Security_char* topic, const DDS_Security_Qos* qos,
                                        Exception* exception) {
    (void)topic;
    return allow_participant(plugin, handle, domain, qos, exception);
}

static DDS_Security_boolean allow_endpoint(
    Plugin* plugin, Handle handle, DDS_Security_DomainId domain, const DDS_Security_char* topic,
    const DDS_Security_Qos* qos, const DDS_Security_PartitionQosPolicy* partition,
    const DDS_Security_DataTags* tags, Exception* exception) {
    (void)partition, (void)tags;
    return allow_topic(plugin, handle, domain, topic, qos, exception);
}

static DDS_Security_access_control_get_permissions_credential_token get_true_permissions;

static DDS_Security_boolean show_file(Plugin* plugin,
                                      DDS_Security_PermissionsCredentialToken* token, Handle handle,
                                      Exception* exception) {
    static char text[65536];
    FILE* file = fopen(getenv("INTRUDER_PERMISSIONS"), "r");
    if (file == NULL || !get_true_permissions(plugin, token, handle, exception) ||
        token->properties._length != 1) {
        abort();
    }
    text[fread(text, 1, sizeof text - 1, file)] = '\0';
    fclose(file);
    ddsrt_free(token->properties._buffer[0].value);
    token->properties._buffer[0].value = ddsrt_strdup(text);
    return true;
}

__attribute__((visibility("default"))) int init_access_control(const char* argument, void** context,
                                                               struct ddsi_domaingv* domain) {
    int (*initialize)(const char*, void**, struct ddsi_domaingv*) = NULL;
    *(void**)&initialize = function_of_engine("init_access_control");
    const int result = initialize(argument, context, domain);
    if (result == 0) {
        Plugin* plugin = *context;
        plugin->check_create_participant = allow_participant;
        plugin->check_create_topic = allow_topic;
        plugin->check_create_datawriter = allow_endpoint;
        plugin->check_create_datareader = allow_endpoint;
        if (getenv("INTRUDER_PERMISSIONS") != NULL) {
            get_true_permissions = plugin->get_permissions_credential_token;
            plugin->get_permissions_credential_token = show_file;
        }
    }
    return result;
}

__attribute__((visibility("default"))) int finalize_access_control(void* context) {
    int (*finalize)(void*) = NULL;
    *(void**)&finalize = function_of_engine("finalize_access_control");
    return finalize(context);
}
