#include <QQmlExtensionPlugin>

#include "quick/Types.h"

/// The module org.atollia.reef for QML engines.
class ReefPlugin : public QQmlExtensionPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char* uri) override { registerReefTypes(uri); }
};

#include "Plugin.moc"
