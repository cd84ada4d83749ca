#include "Selvane/UI/PanelLoader.h"

#include "SelvaneCore/Log.h"

#include <QCoreApplication>
#include <QPluginLoader>

namespace selvane::PanelLoader {

std::unique_ptr<Panel> load(const PanelContext& context) {
    // Relative to the program, so that an installed tree can be moved and the build tree works as it is.
    QPluginLoader loader(QCoreApplication::applicationDirPath() +
                         QLatin1String("/../" SELVANE_PLUGIN_DIRECTORY "/libselvane-popover.so"));
    auto* const factory = qobject_cast<PanelFactory*>(loader.instance());
    if (!factory) {
        Log::line("couldn't load the panel: " + loader.errorString().toStdString());
        return nullptr;
    }
    return factory->makePanel(context);
}

} // namespace selvane::PanelLoader
