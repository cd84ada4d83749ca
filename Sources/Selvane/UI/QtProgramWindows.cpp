#include "Selvane/UI/QtProgramWindows.h"

#include <QGuiApplication>
#include <QWindow>

namespace selvane {

namespace {

ProgramWindow kind(const QWindow& window) {
    switch (window.type()) {
    case Qt::Window:
        return ProgramWindow::main;
    case Qt::Tool:
        return ProgramWindow::panel;
    default: // The types are many, and Qt may add others.
        return ProgramWindow::other;
    }
}

} // namespace

QtProgramWindows::QtProgramWindows() {
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](QWindow* window) {
        // A window that never had the keyboard can close without being asked about.
        if (window)
            watch(*window);
        keyChanged.emit();
    });
}

std::optional<ProgramWindow> QtProgramWindows::key() const {
    const QWindow* const window = QGuiApplication::focusWindow();
    return window ? std::optional(kind(*window)) : std::nullopt;
}

void QtProgramWindows::watch(QWindow& window) {
    // However often it has the keyboard.
    disconnect(&window, &QWindow::visibleChanged, this, nullptr);
    // A window may refuse to close when it is asked to. This is told once it goes, and before the window
    // system takes it away.
    connect(&window, &QWindow::visibleChanged, this, [this, &window](bool isVisible) {
        if (!isVisible)
            willClose.emit(kind(window));
    });
}

} // namespace selvane
