#include "Selvane/UI/Popover/PopoverPanel.h"

#include "Selvane/UI/Controls/CardMargin.h"
#include "Selvane/UI/PanelPlacement.h"
#include "Selvane/UI/Popover/ViewTypes.h"
#include "SelvaneCore/Log.h"

#include <QBitmap>
#include <QFont>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlError>
#include <QQuickItem>
#include <QRegion>
#include <QScreen>
#include <QSurfaceFormat>
#include <QThread>

#include <array>
#include <memory>
#include <optional>
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

/// What a window of that size keeps when its corners are rounded off.
QRegion roundedRegion(QSize size, int radius) {
    QBitmap mask(size);
    mask.fill(Qt::color0);
    QPainter painter(&mask);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRect(QPoint(), size), radius, radius);
    painter.end();
    return QRegion(mask);
}

QUrl popoverFile() {
    return QUrl(QStringLiteral("qrc:/qt-project.org/imports/Selvane/Popover/Popover.qml"));
}

QUrl faceFile(TimerFaceModel::Style style) {
    const auto file = [](const char* name) {
        return QUrl(
            QStringLiteral("qrc:/qt-project.org/imports/Selvane/Timer/%1.qml").arg(QLatin1String(name)));
    };
    switch (style) {
    case TimerFaceModel::Ring:
        return file("RingFace");
    case TimerFaceModel::Bar:
        return file("BarFace");
    case TimerFaceModel::Minimal:
        return file("MinimalFace");
    }
    __builtin_unreachable();
}

/// By weight and size in pixels.
constexpr std::array usedFonts{
    std::pair{QFont::Normal, 11},   std::pair{QFont::Normal, 13},   std::pair{QFont::Normal, 14},
    std::pair{QFont::Medium, 11},   std::pair{QFont::Medium, 12},   std::pair{QFont::Medium, 13},
    std::pair{QFont::DemiBold, 11}, std::pair{QFont::DemiBold, 12}, std::pair{QFont::DemiBold, 14},
};

/// Finds the files of the fonts that the views use, which Qt does only when the first text asks for them.
void findFonts() {
    QFont font = QGuiApplication::font();
    for (const auto& [weight, size] : usedFonts) {
        font.setWeight(weight);
        font.setPixelSize(size);
        [[maybe_unused]] const double height = QFontMetricsF(font).height();
    }
}

/// What the first frame needs and more than one thread can get at once: as long as this exists, the engine
/// reads the files of the views in a thread of its own, while this one finds the fonts.
class HeadStart {
public:
    HeadStart(QQmlEngine& engine, TimerFaceModel::Style style) : _modules(&engine) {
        // The fonts of the system are listed once for all threads.
        const std::unique_ptr<QThread> listing(QThread::create(
            [] { [[maybe_unused]] const bool isThere = QFontInfo(QGuiApplication::font()).exactMatch(); }));
        listing->start();
        // What a module asks of this thread must be done before, or the engine's would wait for it.
        _modules.setData("import QtQuick\nItem {}", {});
        _popover.emplace(&engine, popoverFile(), QQmlComponent::Asynchronous);
        _face.emplace(&engine, faceFile(style), QQmlComponent::Asynchronous);
        listing->wait();
        findFonts();
    }

private:
    QQmlComponent _modules;
    std::optional<QQmlComponent> _popover;
    std::optional<QQmlComponent> _face;
};

} // namespace

void PopoverPanel::prepare() {
    // A third of the memory of the accelerated scene graph, and as smooth for what the popover moves.
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    registerViewTypes();
}

PopoverPanel::PopoverPanel(const PanelContext& context)
    : _model(*context.model, *context.appearance, *context.scheduler, context.windows) {
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
    QObject::connect(&_view, &QWindow::activeChanged, &_view, [this] { activeChanged(); });

    QObject::connect(
        &_view, &QQuickWindow::activeFocusItemChanged, &_view, [this] { keepKeyboard(); },
        Qt::QueuedConnection);

    QSurfaceFormat format = _view.format();
    format.setAlphaBufferSize(8);
    _view.setFormat(format);
    _view.setColor(Qt::transparent);
    _view.setTitle(QStringLiteral("Selvane"));
    _view.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                   Qt::NoDropShadowWindowHint);
    _view.setResizeMode(QQuickView::SizeViewToRootObject);
    _view.setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&_model)}});
    const HeadStart headStart(*_view.engine(), _model.face()->style());
    _view.setSource(popoverFile());
    for (const QQmlError& error : _view.errors())
        Log::line("the popover doesn't load: " + error.toString().toStdString());
    // The timer's face may be given another style, and with it another height.
    if (const QQuickItem* const root = _view.rootObject())
        QObject::connect(root, &QQuickItem::heightChanged, &_view, [this] { heightChanged(); });
}

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
    _view.resize(size);
    _view.setMask(fit.margin > 0 ? QRegion() : roundedRegion(size, _model.cornerRadius()));
}

void PopoverPanel::show(const StatusItemAnchor& anchor) {
    _model.prepareToShow();
    // A panel that was just hidden counts as active until the window system has taken the keyboard from it;
    // that loss is not the user's turning away from the panel shown now.
    _hadKeyboard = _view.isVisible() && _view.isActive();
    fitWindow();
    _anchor = anchor;
    place();
    // The screen that it is on now may have pixels of another size.
    fitWindow();
    _view.show();
    _view.raise();
    _view.requestActivate();
}

void PopoverPanel::hide() {
    _view.hide();
    _model.didHide();
}

bool PopoverPanel::isVisible() const {
    return _view.isVisible();
}

void PopoverPanel::heightChanged() {
    fitWindow();
    // Where it stands above its item, it is the top that moves.
    if (_view.isVisible())
        place();
}

void PopoverPanel::place() {
    QScreen* const screen = screenOf(_anchor);
    if (!screen)
        return;
    const QRect free = screen->availableGeometry();
    // It is the card that has its place; the shadow may reach over the edge of the screen.
    const int margin = _model.shadowMargin();
    const ScreenPoint corner = PanelPlacement::origin(PanelPlacement::scaled(_anchor, describe(*screen)),
                                                      _view.width() - 2 * margin, _view.height() - 2 * margin,
                                                      {free.x(), free.y(), free.width(), free.height()});
    _view.setScreen(screen);
    _view.setPosition(corner.x - margin, corner.y - margin);
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

void PopoverPanel::activeChanged() {
    if (_view.isActive())
        _hadKeyboard = true;
    else if (std::exchange(_hadKeyboard, false) && _view.isVisible() && onTurnedAway)
        onTurnedAway();
}

} // namespace selvane
