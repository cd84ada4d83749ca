#include "Selvane/UI/Popover/PopoverPanel.h"

#include "Selvane/UI/PanelPlacement.h"
#include "SelvaneCore/Log.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQmlError>
#include <QScreen>
#include <QSurfaceFormat>

#include <utility>

// Written by the build. The views' types lie in a static library, where nothing else asks for this function.
extern void qml_register_types_Selvane_Popover();

namespace selvane {

namespace {

// A screen's corner is the same in both units; what lies on it is scaled from there.
ScreenPoint toLogical(ScreenPoint point, const QScreen& screen) {
    const QPoint corner = screen.geometry().topLeft();
    const qreal ratio = screen.devicePixelRatio();
    return {corner.x() + qRound((point.x - corner.x()) / ratio),
            corner.y() + qRound((point.y - corner.y()) / ratio)};
}

StatusItemAnchor toLogical(const StatusItemAnchor& anchor, const QScreen& screen) {
    StatusItemAnchor logical;
    if (anchor.pointer)
        logical.pointer = toLogical(*anchor.pointer, screen);
    if (anchor.icon) {
        const auto [x, y] = toLogical(ScreenPoint{anchor.icon->x, anchor.icon->y}, screen);
        const qreal ratio = screen.devicePixelRatio();
        logical.icon =
            ScreenRect{x, y, qRound(anchor.icon->width / ratio), qRound(anchor.icon->height / ratio)};
    }
    return logical;
}

QScreen* screenOf(const StatusItemAnchor& anchor) {
    if (anchor.icon || anchor.pointer) {
        const QPoint point = anchor.icon ? QPoint(anchor.icon->x + anchor.icon->width / 2,
                                                  anchor.icon->y + anchor.icon->height / 2)
                                         : QPoint(anchor.pointer->x, anchor.pointer->y);
        for (QScreen* const screen : QGuiApplication::screens()) {
            const QRect logical = screen->geometry();
            if (QRect(logical.topLeft(), logical.size() * screen->devicePixelRatio()).contains(point))
                return screen;
        }
    }
    return QGuiApplication::primaryScreen();
}

} // namespace

void PopoverPanel::prepare() {
    // A third of the memory of the accelerated scene graph, and as smooth for what the popover moves.
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    qml_register_types_Selvane_Popover();
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

    QObject::connect(&_view, &QWindow::heightChanged, &_view, [this] { place(_anchor); });
}

bool PopoverPanel::isReady() const {
    return _view.status() == QQuickView::Ready;
}

void PopoverPanel::show(const StatusItemAnchor& anchor) {
    _model.prepareToShow();
    _anchor = anchor;
    _hadKeyboard = false;
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
        PanelPlacement::origin(toLogical(anchor, *screen), _view.width(), _view.height(),
                               {free.x(), free.y(), free.width(), free.height()});
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
