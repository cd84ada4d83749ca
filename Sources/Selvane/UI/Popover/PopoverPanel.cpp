#include "Selvane/UI/Popover/PopoverPanel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/Scheduler.h"
#include "Selvane/Platform/ScreenSpace.h"
#include "Selvane/UI/Controls/CardMargin.h"
#include "Selvane/UI/PanelPlacement.h"
#include "Selvane/UI/Popover/HeadStart.h"
#include "Selvane/UI/Popover/ViewTypes.h"
#include "SelvaneCore/Log.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQmlError>
#include <QQuickItem>
#include <QRegion>
#include <QScreen>
#include <QSurfaceFormat>

#include <cmath>
#include <utility>

namespace selvane {

namespace {

/// The title of no other window of the program: by it the desktop is asked to move the panel. A window
/// without a title of its own may be called as the program is.
constexpr QStringView panelTitle = u"Selvane Timer";

/// How long the desktop is listened to for a window that was shown; it appears at once or not at all.
constexpr Seconds appearancePatience{5};

QScreen* screenOf(const StatusItemAnchor& anchor) {
    for (QScreen* const screen : QGuiApplication::screens()) {
        if (PanelPlacement::isOn(Monitor::of(*screen), anchor))
            return screen;
    }
    return QGuiApplication::primaryScreen();
}

/// What a window of that size keeps when its corners are rounded off.
QRegion roundedRegion(QSize size, int radius) {
    QRegion region(0, radius, size.width(), size.height() - 2 * radius);
    for (int row = 0; row < radius; ++row) {
        const double rise = radius - row - 0.5;
        const int inset = qRound(radius - std::sqrt(radius * radius - rise * rise));
        region += QRect(inset, row, size.width() - 2 * inset, 1);
        region += QRect(inset, size.height() - 1 - row, size.width() - 2 * inset, 1);
    }
    return region;
}

} // namespace

void PopoverPanel::prepare() {
    // A third of the memory of the accelerated scene graph, and as smooth for what the popover moves.
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    registerViewTypes();
}

PopoverPanel::PopoverPanel(const PanelContext& context)
    : _headStart(std::make_unique<HeadStart>(_engine, context.model->settings())),
      _model(*context.model, *context.appearance, *context.scheduler, context.windows),
      _placer(context.placer),
      _space(context.space),
      _scheduler(*context.scheduler) {
    QObject::connect(&_model, &PopoverModel::cancelled, &_view, [this] {
        if (onCancel)
            onCancel();
    });
    QObject::connect(&_model, &PopoverModel::quitRequested, &_view, [this] {
        if (onQuit)
            onQuit();
    });
    QObject::connect(&_model, &PopoverModel::turnedAway, &_view, [this] {
        if (onTurnedAway)
            onTurnedAway();
    });
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &_view,
                     [this](QWindow* window) { keyboardMoved(window); });

    QObject::connect(
        &_view, &QQuickWindow::activeFocusItemChanged, &_view, [this] { keepKeyboard(); },
        Qt::QueuedConnection);

    QSurfaceFormat format = _view.format();
    format.setAlphaBufferSize(8);
    _view.setFormat(format);
    _view.setColor(Qt::transparent);
    _view.setTitle(panelTitle.toString());
    _view.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                   Qt::NoDropShadowWindowHint);
    _view.setResizeMode(QQuickView::SizeViewToRootObject);
    _view.setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&_model)}});
    // What can be had before the files of the views are read.
    _view.create();
    HeadStart::findFonts();
    _view.setSource(HeadStart::popoverFile());
    _headStart.reset();
    for (const QQmlError& error : _view.errors())
        Log::line("the popover doesn't load: " + error.toString().toStdString());
    // The timer's face may be given another style, and with it another height.
    if (const QQuickItem* const root = _view.rootObject())
        QObject::connect(root, &QQuickItem::heightChanged, &_view, [this] { heightChanged(); });
}

PopoverPanel::~PopoverPanel() = default;

bool PopoverPanel::isReady() const {
    return _view.status() == QQuickView::Ready;
}

void PopoverPanel::fitWindow() {
    const QQuickItem* const root = _view.rootObject();
    if (!root)
        return;
    const QSize size(qRound(root->width()), qRound(root->height()));
    const Fit fit{size, _model.shadowMargin(), _view.devicePixelRatio()};
    if (std::exchange(_fit, fit) == fit && _view.size() == size)
        return;
    CardMargin::set(_view, fit.margin);
    // Equal bounds make tiling compositors let the window float.
    _view.setMinimumSize(size);
    _view.setMaximumSize(size);
    // Size and place always together: the window knows of either only what the server has confirmed, and
    // would go back to that.
    _view.setGeometry({_corner, size});
    _view.setMask(fit.margin > 0 ? QRegion() : roundedRegion(size, _model.cornerRadius()));
}

void PopoverPanel::show(const StatusItemAnchor& anchor) {
    _model.prepareToShow();
    // A panel that was just hidden counts as active until the window system has taken the keyboard from it;
    // that loss is not the user's turning away from the panel shown now.
    _hadKeyboard = _view.isVisible() && _view.isActive();
    chooseScreen(anchor);
    fitWindow();
    place();
    // The screen that it is on now may have pixels of another size.
    fitWindow();
    // What is told of a window before it appears may cross with what the window manager does to it, and some
    // of that be lost.
    QObject::connect(
        &_view, &QQuickWindow::frameSwapped, &_view, [this] { keepPlace(); }, Qt::SingleShotConnection);
    // A window that appears comes on top by itself.
    if (_view.isVisible())
        _view.raise();
    placeByDesktop();
    _view.show();
    _view.requestActivate();
    layOutLists();
}

void PopoverPanel::layOutLists() {
    const QQuickItem* const root = _view.rootObject();
    if (!root || std::exchange(_listsAreLaidOut, true))
        return;
    for (QQuickItem* const item : root->findChildren<QQuickItem*>()) {
        // What all views of lists offer.
        if (item->metaObject()->indexOfMethod("positionViewAtIndex(int,int)") >= 0)
            item->ensurePolished();
    }
}

void PopoverPanel::hide() {
    _patience.end();
    _placement.reset();
    _view.hide();
    _model.didHide();
}

bool PopoverPanel::isVisible() const {
    return _view.isVisible();
}

void PopoverPanel::setLevel(PanelLevel level) {
    _view.setFlag(Qt::WindowStaysOnTopHint, level == PanelLevel::floating);
}

void PopoverPanel::activate() {
    _view.requestActivate();
}

ScreenRect PopoverPanel::frame() const {
    const int margin = _fit.margin;
    const QRect card = _view.geometry().adjusted(margin, margin, -margin, -margin);
    return {card.x(), card.y(), card.width(), card.height()};
}

void PopoverPanel::heightChanged() {
    fitWindow();
    // Where it stands above its item, it is the top that moves.
    if (!_view.isVisible())
        return;
    place();
    if (_placement)
        _placement->repeat();
}

void PopoverPanel::chooseScreen(const StatusItemAnchor& anchor) {
    _anchor = anchor;
    // Before the window is changed: the changes reach the window manager together if nothing is asked
    // between.
    if (const QScreen* const screen = screenOf(anchor))
        _available = available(*screen);
}

void PopoverPanel::place() {
    QScreen* const screen = screenOf(_anchor);
    if (!screen)
        return;
    // It is the card that has its place; the shadow may reach over the edge of the screen.
    const int margin = _model.shadowMargin();
    const ScreenPoint corner =
        PanelPlacement::origin(PanelPlacement::scaled(_anchor, Monitor::of(*screen)),
                               _fit.size.width() - 2 * margin, _fit.size.height() - 2 * margin, _available);
    _view.setScreen(screen);
    _corner = {corner.x - margin, corner.y - margin};
    _view.setGeometry({_corner, _fit.size});
}

void PopoverPanel::keepPlace() {
    if (_view.position() != _corner)
        _view.setGeometry({_corner, _fit.size});
}

ScreenRect PopoverPanel::available(const QScreen& screen) const {
    // Qt knows it of a single screen.
    if (_space && QGuiApplication::screens().size() > 1) {
        const Monitor monitor = Monitor::of(screen);
        if (const auto pixels = _space->available(monitor.pixels))
            return PanelPlacement::scaled(*pixels, monitor);
    }
    const QRect free = screen.availableGeometry();
    return {free.x(), free.y(), free.width(), free.height()};
}

void PopoverPanel::placeByDesktop() {
    if (!_placer)
        return;
    if (_placement && _view.isVisible()) {
        _placement->repeat();
        return;
    }
    _placement = _placer->placeNext(_view.title().toStdString(),
                                    [this](const auto& screen) { return cornerOn(screen); });
    _patience = _scheduler.after(appearancePatience, [this] {
        if (_placement && !_placement->hasWindow())
            _placement.reset();
    });
}

ScreenPoint PopoverPanel::cornerOn(const WindowPlacer::Screen& screen) const {
    const int margin = _fit.margin;
    const ScreenPoint corner = PanelPlacement::origin(
        PanelPlacement::endOfBar(screen.whole, screen.available), _fit.size.width() - 2 * margin,
        _fit.size.height() - 2 * margin, screen.available);
    return {corner.x - margin, corner.y - margin};
}

void PopoverPanel::keepKeyboard() {
    QQuickItem* const root = _view.rootObject();
    const QQuickItem* const focused = _view.activeFocusItem();
    if (!root)
        return;
    // A menu that closes leaves the keyboard with nothing; the control that had it before gets it back.
    if (!focused || focused == _view.contentItem())
        root->forceActiveFocus(Qt::OtherFocusReason);
    if (_view.activeFocusItem() == root)
        _model.keyboardIsIdle();
}

void PopoverPanel::keyboardMoved(QWindow* window) {
    if (window == &_view)
        _hadKeyboard = true;
    // The other windows of this program leave the panel open.
    if (!window && std::exchange(_hadKeyboard, false) && _view.isVisible() && onTurnedAway)
        onTurnedAway();
}

} // namespace selvane
