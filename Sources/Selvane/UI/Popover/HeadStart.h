#pragma once

#include <QFont>
#include <QQmlComponent>
#include <QUrl>

#include <memory>
#include <span>
#include <vector>

class QQmlEngine;

namespace selvane {

class AppSettings;

/// What the popover's first frame needs and another thread can get while the main thread makes the rest: as
/// long as this exists, the engine's own thread reads the files of the views. Main thread.
class HeadStart {
public:
    HeadStart(QQmlEngine& engine, const AppSettings& settings);

    /// The rest of the files, in the order in which they are needed.
    void goOn();
    /// Those of the page that comes after the first frame.
    void readPage();

    [[nodiscard]] static QUrl popoverFile();

    struct UsedFont {
        QFont::Weight weight;
        /// Pixels of the window.
        int size;
        friend auto operator<=>(const UsedFont&, const UsedFont&) = default;
    };

    /// Those of the system's font that the first frame is written in.
    [[nodiscard]] static std::span<const UsedFont> usedFonts();

    /// Finds the fonts that the views use and makes them ready, which Qt does only when the first text asks
    /// for them.
    static void findFonts();

private:
    void read(const QUrl& file);

    QQmlEngine& _engine;
    const AppSettings& _settings;
    std::vector<std::unique_ptr<QQmlComponent>> _files;
};

} // namespace selvane
