#include "Selvane/UI/QtProgramWindows.h"

#include <QEvent>
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
            window->installEventFilter(this);
        keyChanged.emit();
    });
}

std::optional<ProgramWindow> QtProgramWindows::key() const {
    const QWindow* const window = QGuiApplication::focusWindow();
    return window ? std::optional(kind(*window)) : std::nullopt;
}

bool QtProgramWindows::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close) {
        if (const auto* const window = qobject_cast<const QWindow*>(watched))
            willClose.emit(kind(*window));
    }
    return false;
}

} // namespace selvane
