#pragma once

#include "Selvane/Platform/WindowPlacer.h"
#include "Selvane/UI/Panel.h"
#include "Selvane/UI/Popover/PanelWindow.h"
#include "Selvane/UI/Popover/PopoverModel.h"

#include <QQmlEngine>
#include <QQuickItem>

#include <memory>

QT_FORWARD_DECLARE_CLASS(QScreen)

namespace selvane {

class HeadStart;

/// The panel as a Qt Quick window. Made at the first opening, hidden and shown again afterwards.
///
/// The window is a card and, where the desktop lets windows be clear, a margin around it for the card's
/// shadow. Without that the card is all of the window, and the window is cut to its rounded corners.
class PopoverPanel final : public Panel {
public:
    /// Makes the views known and chooses how they are drawn. Once, before the first window of the process.
    static void prepare();

    explicit PopoverPanel(const PanelContext& context);

    /// False if the view couldn't be made; the panel is of no use then.
    [[nodiscard]] bool isReady() const;

    ~PopoverPanel() override;

    void show(const StatusItemAnchor& anchor) override;
    void hide() override;
    [[nodiscard]] bool isVisible() const override;
    void setLevel(PanelLevel level) override;
    void activate() override;
    [[nodiscard]] ScreenRect frame() const override;

private:
    /// What the window was last made to fit.
    struct Fit {
        QSize size;
        int margin = 0;
        double pixels = 0;

        bool operator==(const Fit&) const = default;
    };

    void makeRoot();
    /// Whether the window has to fit something else than before.
    bool measure();
    /// Gives it the size of what it shows, and the place that goes with it.
    void fitWindow();
    /// What the window keeps to until its size is another.
    void bound();
    void visibleChanged(bool isVisible);
    void heightChanged();
    void chooseScreen(const StatusItemAnchor& anchor);
    void place();
    void keepPlaceAfterFrame();
    /// What bars leave of a screen, in units of windows.
    [[nodiscard]] ScreenRect available(const QScreen& screen) const;
    /// Draws the first frame before the window system asks for it: while it is busy with a managed window,
    /// and at once in any other.
    void drawAhead();
    /// Has the page of the tasks made when the first frame is on the screen.
    void completeAfterFrame();
    void takeKeyboard();
    void placeByDesktop();
    [[nodiscard]] ScreenPoint cornerOn(const WindowPlacer::Screen& screen) const;
    void keepKeyboard();
    void keyboardMoved(QWindow* window);
    void keyboardLost();

    QQmlEngine _engine;
    /// Until the view is whole.
    std::unique_ptr<HeadStart> _headStart;
    PopoverModel _model;
    PanelWindow _window;
    /// The window's; null if it can't be made.
    QQuickItem* _root = nullptr;
    /// Where the panel was last opened.
    StatusItemAnchor _anchor;
    /// What bars left of that screen then, in units of windows.
    ScreenRect _available{};
    QPoint _corner;
    Fit _fit;
    bool _isShown = false;
    bool _hadKeyboard = false;
    bool _isLosingKeyboard = false;
    /// Null where windows choose their own place.
    WindowPlacer* _placer;
    const ScreenSpace* _space;
    /// Null where the window is better the window manager's.
    UnmanagedWindows* _unmanagedWindows;
    /// While the panel is shown by a desktop that places it.
    std::unique_ptr<WindowPlacer::Placement> _placement;
    Scheduler& _scheduler;
    /// Runs while the desktop may yet tell of the window.
    Subscription _patience;
};

} // namespace selvane
