#include "platform/linux/displayservices/GnomeAmbientSetting.h"

#include <dlfcn.h>

#include "platform/linux/Symbol.h"

namespace noctra::display_services {

namespace {

constexpr const char* schemaName = "org.gnome.settings-daemon.plugins.power";
constexpr const char* keyName = "ambient-enabled";

} // namespace

/// The functions that are used of GIO and of GLib and GObject, which GIO brings along. Were this
/// library linked with them, they would be loaded (2 ms, 1.2 MB) in every run.
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
    complete = gio != nullptr && findSymbol(gio, "g_main_context_new", newContext) &&
               findSymbol(gio, "g_main_context_push_thread_default", pushContext) &&
               findSymbol(gio, "g_main_context_pop_thread_default", popContext) &&
               findSymbol(gio, "g_main_context_unref", unrefContext) &&
               findSymbol(gio, "g_object_unref", unrefObject) &&
               findSymbol(gio, "g_settings_schema_source_get_default", defaultSchemas) &&
               findSymbol(gio, "g_settings_schema_source_lookup", lookUpSchema) &&
               findSymbol(gio, "g_settings_schema_has_key", hasKey) &&
               findSymbol(gio, "g_settings_schema_unref", unrefSchema) &&
               findSymbol(gio, "g_settings_new", newSettings) &&
               findSymbol(gio, "g_settings_get_boolean", getBoolean) &&
               findSymbol(gio, "g_settings_set_boolean", setBoolean) &&
               findSymbol(gio, "g_settings_sync", sync);
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
    // GIO tells the settings' service in the background, and the sync below waits until it has
    // taken the value, without an end where it hangs. Only the value that is put back is waited
    // for, since the process may end right after.
    if (on)
        glib_->sync();
    return true;
}

} // namespace noctra::display_services
