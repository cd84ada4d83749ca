#include "Selvane/UI/Panel.h"
#include "Selvane/UI/Popover/PopoverPanel.h"
#include "SelvaneCore/Log.h"

#include <QObject>

namespace selvane {

class PopoverPlugin final : public QObject, public PanelFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.lorbin.selvane.PanelFactory/1")
    Q_INTERFACES(selvane::PanelFactory)

public:
    PopoverPlugin() {
        Log::toJournal();
        PopoverPanel::prepare();
    }

    [[nodiscard]] std::unique_ptr<Panel> makePanel(const PanelContext& context) override {
        auto panel = std::make_unique<PopoverPanel>(context);
        if (!panel->isReady())
            return nullptr;
        return panel;
    }
};

} // namespace selvane

#include "PopoverPlugin.moc"
