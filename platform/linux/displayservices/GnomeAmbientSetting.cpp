#include "platform/linux/displayservices/GnomeAmbientSetting.h"

#include <dlfcn.h>

namespace noctra::display_services {

namespace {

constexpr const char* schemaName = "org.gnome.settings-daemon.plugins.power";
constexpr const char* keyName = "ambient-enabled";

template <typename Function>
bool find(void* library, const char* name, Function& function) {
    function = library != nullptr ? reinterpret_cast<Function>(::dlsym(library, name)) : nullptr;
    return function != nullptr;
}

} // namespace

/// The functions of GLib, GObject and GIO that are used.
struct GnomeAmbientSetting::GLib {
    using Boolean = int;
    using Object = void*;

    Object (*newContext)() = nullptr;
    void (*pushContext)(Object context) = nullptr;
    void (*popContext)(Object context) = nullptr;
    void (*unrefContext)(Object context) = nullptr;
    void (*unrefObject)(Object object) = nullptr;
    Object (*defaultSchemas)() = nullptr;
    Object (*lookUpSchema)(Object schemas, const char* name, Boolean recursive) = nullptr;
    Boolean (*hasKey)(Object schema, const char* key) = nullptr;
    void (*unrefSchema)(Object schema) = nullptr;
    Object (*newSettings)(const char* schema) = nullptr;
    Boolean (*getBoolean)(Object settings, const char* key) = nullptr;
    Boolean (*setBoolean)(Object settings, const char* key, Boolean value) = nullptr;
    void (*sync)() = nullptr;
    bool complete = false; ///< all of them have been found

    GLib();
    /// g_settings_new ends the process where the schema is missing.
    [[nodiscard]] bool isKeyThere() const;
};

GnomeAmbientSetting::GLib::GLib() {
    void* const gio = ::dlopen("libgio-2.0.so.0", RTLD_LAZY | RTLD_LOCAL);
    void* const gobject = ::dlopen("libgobject-2.0.so.0", RTLD_LAZY | RTLD_LOCAL);
    void* const glib = ::dlopen("libglib-2.0.so.0", RTLD_LAZY | RTLD_LOCAL);
    complete = find(glib, "g_main_context_new", newContext) &&
               find(glib, "g_main_context_push_thread_default", pushContext) &&
               find(glib, "g_main_context_pop_thread_default", popContext) &&
               find(glib, "g_main_context_unref", unrefContext) &&
               find(gobject, "g_object_unref", unrefObject) &&
               find(gio, "g_settings_schema_source_get_default", defaultSchemas) &&
               find(gio, "g_settings_schema_source_lookup", lookUpSchema) &&
               find(gio, "g_settings_schema_has_key", hasKey) &&
               find(gio, "g_settings_schema_unref", unrefSchema) &&
               find(gio, "g_settings_new", newSettings) &&
               find(gio, "g_settings_get_boolean", getBoolean) &&
               find(gio, "g_settings_set_boolean", setBoolean) &&
               find(gio, "g_settings_sync", sync);
}

bool GnomeAmbientSetting::GLib::isKeyThere() const {
    const Object schemas = defaultSchemas();
    const Object schema = schemas != nullptr ? lookUpSchema(schemas, schemaName, 1) : nullptr;
    if (schema == nullptr)
        return false;
    const bool found = hasKey(schema, keyName) != 0;
    unrefSchema(schema);
    return found;
}

/// The settings, open as long as the object lives. They report changes to a context of their own,
/// so that the host's main loop hears nothing of them.
class GnomeAmbientSetting::Settings {
public:
    explicit Settings(const GLib& glib) : glib_(glib) {
        if (!glib_.complete || !glib_.isKeyThere())
            return;
        context_ = glib_.newContext();
        glib_.pushContext(context_);
        settings_ = glib_.newSettings(schemaName);
    }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;
    ~Settings() {
        if (settings_ == nullptr)
            return;
        glib_.unrefObject(settings_);
        glib_.popContext(context_);
        glib_.unrefContext(context_);
    }
    /// Null where the desktop has no such setting.
    [[nodiscard]] GLib::Object get() const { return settings_; }

private:
    const GLib& glib_;
    GLib::Object context_ = nullptr;
    GLib::Object settings_ = nullptr;
};

GnomeAmbientSetting::GnomeAmbientSetting() = default;
GnomeAmbientSetting::~GnomeAmbientSetting() = default;

std::optional<bool> GnomeAmbientSetting::read() {
    if (!glib_)
        glib_ = std::make_unique<GLib>();
    const Settings settings(*glib_);
    if (settings.get() == nullptr)
        return std::nullopt;
    return glib_->getBoolean(settings.get(), keyName) != 0;
}

bool GnomeAmbientSetting::write(bool on) {
    if (!glib_)
        glib_ = std::make_unique<GLib>();
    const Settings settings(*glib_);
    if (settings.get() == nullptr || glib_->setBoolean(settings.get(), keyName, on ? 1 : 0) == 0)
        return false;
    // The settings' service is told in the background, in its own time, which a service that hangs
    // takes without an end. Only the last word before the process ends has to be waited for.
    if (on)
        glib_->sync();
    return true;
}

} // namespace noctra::display_services
