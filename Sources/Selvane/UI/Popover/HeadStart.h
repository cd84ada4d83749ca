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
enum class TimerStyle;

/// What the popover's first frame needs and another thread can get while the main thread makes the rest: the
/// engine's own thread reads the files of the views, and has them as long as this exists. Main thread.
class HeadStart {
public:
    HeadStart(QQmlEngine& engine, const AppSettings& settings);

    /// Has the files of the popover's parts read.
    void readParts();
    /// Has those of the page read that comes after the first frame.
    void readPage();

    /// The files of the parts in the order in which they are needed: Qt completes the last item of a file
    /// first.
    [[nodiscard]] static std::vector<QUrl> partFiles(TimerStyle style);

    [[nodiscard]] static QUrl popoverFile();

    struct UsedFont {
        QFont::Weight weight;
        /// Pixels of the window.
        int size;
        friend auto operator<=>(const UsedFont&, const UsedFont&) = default;
    };

    /// Those of the system's font that the first frame is written in.
    [[nodiscard]] static std::span<const UsedFont> usedFonts();

    /// That of the note, whose line is measured though it has nothing to say.
    [[nodiscard]] static UsedFont noteFont();

    /// That of the time's digits.
    [[nodiscard]] static UsedFont timeFont(TimerStyle style);

    /// Finds the fonts that the views use and makes them ready, which Qt does only when the first text asks
    /// for them.
    void findFonts() const;

private:
    void read(const QUrl& file);

    QQmlEngine& _engine;
    const AppSettings& _settings;
    std::vector<std::unique_ptr<QQmlComponent>> _files;
};

} // namespace selvane
