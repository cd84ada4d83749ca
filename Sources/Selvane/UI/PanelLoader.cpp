#include "Selvane/UI/PanelLoader.h"

#include "SelvaneCore/Log.h"

#include <QCoreApplication>
#include <QFontInfo>
#include <QGuiApplication>
#include <QLibrary>
#include <QPluginLoader>
#include <QThread>

namespace selvane::PanelLoader {

namespace {

/// Has another thread list the fonts of the system, which the first text would wait for.
class FontListing {
public:
    FontListing() { _thread->start(); }
    FontListing(const FontListing&) = delete;
    FontListing& operator=(const FontListing&) = delete;
    ~FontListing() { _thread->wait(); }

private:
    std::unique_ptr<QThread> _thread{QThread::create(
        [] { [[maybe_unused]] const bool isThere = QFontInfo(QGuiApplication::font()).exactMatch(); })};
};

} // namespace

void prepare() {
    QLibrary engine(QStringLiteral("Qt6Qml"), QT_VERSION_MAJOR);
    engine.setLoadHints(QLibrary::PreventUnloadHint);
    // Who can't load it here says so when the panel is opened.
    engine.load();
}

std::unique_ptr<Panel> load(const PanelContext& context) {
    const FontListing fonts;
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
