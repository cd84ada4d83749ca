#pragma once

#include "Selvane/UI/ProgramWindows.h"

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QWindow)

namespace selvane {

/// The windows of the QGuiApplication. The panel is its only tool window and the main window its only plain
/// one.
class QtProgramWindows final : public QObject, public ProgramWindows {
public:
    /// Once there is a QGuiApplication.
    QtProgramWindows();

    [[nodiscard]] std::optional<ProgramWindow> key() const override;

private:
    void watch(QWindow& window);
};

} // namespace selvane
