#include "Selvane/UI/Popover/PopoverPanel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/Scheduler.h"
#include "Selvane/Platform/ScreenSpace.h"
#include "Selvane/Platform/UnmanagedWindows.h"
#include "Selvane/UI/Controls/CardMargin.h"
#include "Selvane/UI/PanelPlacement.h"
#include "Selvane/UI/Popover/HeadStart.h"
#include "Selvane/UI/Popover/ViewTypes.h"
#include "SelvaneCore/Log.h"

#include <QGuiApplication>
#include <QImage>
#include <QQmlComponent>
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
      _unmanagedWindows(context.unmanagedWindows && context.unmanagedWindows->areWelcome()
                            ? context.unmanagedWindows
                            : nullptr),
      _scheduler(*context.scheduler) {
    QObject::connect(&_model, &PopoverModel::cancelled, &_window, [this] {
        if (onCancel)
            onCancel();
    });
    QObject::connect(&_model, &PopoverModel::quitRequested, &_window, [this] {
        if (onQuit)
            onQuit();
    });
    QObject::connect(&_model, &PopoverModel::turnedAway, &_window, [this] {
        if (onTurnedAway)
            onTurnedAway();
    });
    QObject::connect(&_window, &QWindow::visibleChanged, &_window,
                     [this](bool isVisible) { visibleChanged(isVisible); });
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &_window,
                     [this](QWindow* window) { keyboardMoved(window); });

    QObject::connect(
        &_window, &QQuickWindow::activeFocusItemChanged, &_window, [this] { keepKeyboard(); },
        Qt::QueuedConnection);

    QSurfaceFormat format = _window.format();
    format.setAlphaBufferSize(8);
    _window.setFormat(format);
    _window.setColor(Qt::transparent);
    _window.setTitle(panelTitle.toString());
    _window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                     Qt::NoDropShadowWindowHint);
    if (_unmanagedWindows) {
        _window.setFlag(Qt::BypassWindowManagerHint);
        // Nobody else gives it the keyboard for a click.
        _window.onPress = [this] {
            if (!_window.isActive())
                takeKeyboard();
        };
    }
    QQmlEngine::setContextForObject(_window.contentItem(), _engine.rootContext());
    _engine.setIncubationController(_window.incubationController());
    // What can be had before the files of the views are read.
    _window.create();
    // Not before: until the engine's thread is under way, asking it for more means waiting for it.
    _headStart->readParts();
    _headStart->findFonts();
    _model.begin();
    makeRoot();
    // The timer's face may be given another style, and with it another height.
    if (_root)
        QObject::connect(_root, &QQuickItem::heightChanged, &_window, [this] { heightChanged(); });
}

void PopoverPanel::makeRoot() {
    QQmlComponent component(&_engine, HeadStart::popoverFile());
    std::unique_ptr<QObject> object;
    if (component.isReady())
        object.reset(
            component.createWithInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&_model)}}));
    for (const QQmlError& error : component.errors())
        Log::line("the popover doesn't load: " + error.toString().toStdString());
    _root = qobject_cast<QQuickItem*>(object.get());
    if (!_root)
        return;
    object.release()->setParent(_window.contentItem());
    _root->setParentItem(_window.contentItem());
}

PopoverPanel::~PopoverPanel() {
    if (_unmanagedWindows)
        _unmanagedWindows->returnKeyboard();
}

bool PopoverPanel::isReady() const {
    return _root != nullptr;
}

bool PopoverPanel::measure() {
    const QSize size(qRound(_root->width()), qRound(_root->height()));
    const Fit fit{size, _model.shadowMargin(), _window.devicePixelRatio()};
    return std::exchange(_fit, fit) != fit;
}

void PopoverPanel::fitWindow() {
    if (measure())
        bound();
    place();
    // The screen that it is on now may have pixels of another size.
    if (measure()) {
        bound();
        place();
    }
}

void PopoverPanel::bound() {
    CardMargin::set(_window, _fit.margin);
    // Equal bounds make tiling compositors let the window float.
    _window.setMinimumSize(_fit.size);
    _window.setMaximumSize(_fit.size);
    _window.setMask(_fit.margin > 0 ? QRegion() : roundedRegion(_fit.size, _model.cornerRadius()));
}

void PopoverPanel::show(const StatusItemAnchor& anchor) {
    _model.prepareToShow();
    // A panel that was just hidden counts as active until the window system has taken the keyboard from it;
    // that loss is not the user's turning away from the panel shown now.
    _hadKeyboard = _window.isVisible() && _window.isActive();
    _isLosingKeyboard = false;
    chooseScreen(anchor);
    fitWindow();
    // A managed window that appears comes on top by itself.
    if (_unmanagedWindows || _window.isVisible())
        _window.raise();
    placeByDesktop();
    _isShown = true;
    _window.show();
    if (_unmanagedWindows) {
        // Such a window is there at once: what is drawn is seen before the server has answered for the
        // keyboard.
        drawAhead();
        takeKeyboard();
    } else {
        takeKeyboard();
        drawAhead();
    }
    keepPlaceAfterFrame();
    if (_headStart)
        completeAfterFrame();
}

void PopoverPanel::completeAfterFrame() {
    _headStart->readPage();
    QObject::connect(
        &_window, &QQuickWindow::frameSwapped, &_window,
        [this] {
            _model.complete();
            _headStart.reset();
        },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void PopoverPanel::drawAhead() {
    // Of a window that is there at once only the first frame takes longer than the window.
    if (_window.isExposed() || (_unmanagedWindows && !_headStart))
        return;
    // The frame that the window shows once it is there then finds all its nodes and pictures made.
    [[maybe_unused]] const QImage frame = _window.grabWindow();
}

void PopoverPanel::hide() {
    _patience.end();
    _placement.reset();
    _isShown = false;
    if (_unmanagedWindows)
        _unmanagedWindows->returnKeyboard();
    _window.hide();
    _model.didHide();
}

bool PopoverPanel::isVisible() const {
    return _window.isVisible();
}

void PopoverPanel::setLevel(PanelLevel level) {
    if (!_unmanagedWindows) {
        _window.setFlag(Qt::WindowStaysOnTopHint, level == PanelLevel::floating);
        return;
    }
    if (level == PanelLevel::floating)
        _window.raise();
    else if (const QWindow* const key = QGuiApplication::focusWindow(); key && key != &_window)
        _unmanagedWindows->putBehind(_window.winId(), key->winId());
}

void PopoverPanel::activate() {
    takeKeyboard();
}

void PopoverPanel::takeKeyboard() {
    if (_unmanagedWindows)
        _unmanagedWindows->lendKeyboard(_window.winId(), [this] { _hadKeyboard = true; });
    else
        _window.requestActivate();
}

ScreenRect PopoverPanel::frame() const {
    const int margin = _fit.margin;
    const QRect card = _window.geometry().adjusted(margin, margin, -margin, -margin);
    return {card.x(), card.y(), card.width(), card.height()};
}

void PopoverPanel::heightChanged() {
    if (!_window.isVisible())
        return;
    // Where it stands above its item, it is the top that moves.
    fitWindow();
    if (_placement)
        _placement->repeat();
}

void PopoverPanel::visibleChanged(bool isVisible) {
    if (isVisible || !_isShown)
        return;
    // The window manager has closed it, and with it goes what it was given.
    _fit = {};
    if (onCancel)
        onCancel();
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
    _window.setScreen(screen);
    _corner = {corner.x - margin, corner.y - margin};
    // Size and place always together: the window goes by what the server has confirmed of either, which may
    // be older than what it was asked for.
    _window.setGeometry({_corner, _fit.size});
}

void PopoverPanel::keepPlaceAfterFrame() {
    // What is told of a window before it appears may cross with what the window manager does to it, and some
    // of that be lost. A frame from before it appeared, drawn ahead or not, tells nothing yet.
    QObject::connect(
        &_window, &QQuickWindow::frameSwapped, &_window,
        [this] {
            if (!_window.isExposed())
                keepPlaceAfterFrame();
            else if (_window.position() != _corner)
                _window.setGeometry({_corner, _fit.size});
        },
        Qt::SingleShotConnection);
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
    if (_placement && _window.isVisible()) {
        _placement->repeat();
        return;
    }
    _placement = _placer->placeNext(_window.title().toStdString(),
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
    const QQuickItem* const focused = _window.activeFocusItem();
    if (!_root)
        return;
    // A menu that closes leaves the keyboard with nothing; the control that had it before gets it back.
    if (!focused || focused == _window.contentItem())
        _root->forceActiveFocus(Qt::OtherFocusReason);
    if (_window.activeFocusItem() == _root)
        _model.keyboardIsIdle();
}

void PopoverPanel::keyboardMoved(QWindow* window) {
    if (window == &_window)
        _hadKeyboard = true;
    // The loss of an earlier opening may be told when the panel has the keyboard again already, which comes
    // right after it then. The other windows of this program leave the panel open.
    _isLosingKeyboard = !window && std::exchange(_hadKeyboard, false);
    if (_isLosingKeyboard)
        QMetaObject::invokeMethod(
            &_window, [this] { keyboardLost(); }, Qt::QueuedConnection);
}

void PopoverPanel::keyboardLost() {
    if (std::exchange(_isLosingKeyboard, false) && _window.isVisible() && onTurnedAway)
        onTurnedAway();
}

} // namespace selvane
