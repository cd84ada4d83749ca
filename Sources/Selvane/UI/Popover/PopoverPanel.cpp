#include "Selvane/UI/Popover/PopoverPanel.h"

#include "Selvane/UI/PanelPlacement.h"
#include "Selvane/UI/Popover/ViewTypes.h"
#include "SelvaneCore/Log.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQmlError>
#include <QScreen>
#include <QSurfaceFormat>

#include <utility>

namespace selvane {

namespace {

PanelPlacement::Screen describe(const QScreen& screen) {
    const QRect logical = screen.geometry();
    const QSize pixels = logical.size() * screen.devicePixelRatio();
    return {{logical.x(), logical.y(), pixels.width(), pixels.height()}, screen.devicePixelRatio()};
}

QScreen* screenOf(const StatusItemAnchor& anchor) {
    for (QScreen* const screen : QGuiApplication::screens()) {
        if (PanelPlacement::isOn(describe(*screen), anchor))
            return screen;
    }
    return QGuiApplication::primaryScreen();
}

} // namespace

void PopoverPanel::prepare() {
    // A third of the memory of the accelerated scene graph, and as smooth for what the popover moves.
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    registerViewTypes();
}

PopoverPanel::PopoverPanel(const PanelContext& context) : _model(*context.model, *context.appearance) {
    QObject::connect(&_model, &PopoverModel::cancelled, &_view, [this] {
        if (onCancel)
            onCancel();
    });
    QObject::connect(&_model, &PopoverModel::quitRequested, &_view, [this] {
        if (onQuit)
            onQuit();
    });
    QObject::connect(&_view, &QWindow::activeChanged, &_view, [this] { activeChanged(); });

    QSurfaceFormat format = _view.format();
    format.setAlphaBufferSize(8);
    _view.setFormat(format);
    _view.setColor(Qt::transparent);
    _view.setTitle(QStringLiteral("Selvane"));
    _view.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                   Qt::NoDropShadowWindowHint);
    _view.setResizeMode(QQuickView::SizeViewToRootObject);
    _view.setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&_model)}});
    _view.setSource(QUrl(QStringLiteral("qrc:/qt-project.org/imports/Selvane/Popover/Popover.qml")));
    for (const QQmlError& error : _view.errors())
        Log::line("the popover doesn't load: " + error.toString().toStdString());

    // Equal bounds make tiling compositors let the window float.
    _view.setMinimumSize(_view.size());
    _view.setMaximumSize(_view.size());
}

bool PopoverPanel::isReady() const {
    return _view.status() == QQuickView::Ready;
}

void PopoverPanel::show(const StatusItemAnchor& anchor) {
    _model.prepareToShow();
    // A panel that was just hidden counts as active until the window system has taken the keyboard from it;
    // that loss is not the user's turning away from the panel shown now.
    _hadKeyboard = _view.isVisible() && _view.isActive();
    place(anchor);
    _view.show();
    _view.raise();
    _view.requestActivate();
}

void PopoverPanel::hide() {
    _view.hide();
}

bool PopoverPanel::isVisible() const {
    return _view.isVisible();
}

void PopoverPanel::place(const StatusItemAnchor& anchor) {
    QScreen* const screen = screenOf(anchor);
    if (!screen)
        return;
    const QRect free = screen->availableGeometry();
    const ScreenPoint corner =
        PanelPlacement::origin(PanelPlacement::scaled(anchor, describe(*screen)), _view.width(),
                               _view.height(), {free.x(), free.y(), free.width(), free.height()});
    _view.setScreen(screen);
    _view.setPosition(corner.x, corner.y);
}

void PopoverPanel::activeChanged() {
    if (_view.isActive())
        _hadKeyboard = true;
    else if (std::exchange(_hadKeyboard, false) && _view.isVisible() && onTurnedAway)
        onTurnedAway();
}

} // namespace selvane
