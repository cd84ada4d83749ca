#include "Selvane/UI/Popover/HeadStart.h"

#include "Selvane/App/AppSettings.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QString>

#include <array>

namespace selvane {

namespace {

QUrl viewFile(const char* module, const char* name) {
    return QUrl(QStringLiteral("qrc:/qt-project.org/imports/Selvane/%1/%2.qml")
                    .arg(QLatin1String(module), QLatin1String(name)));
}

QUrl faceFile(TimerStyle style) {
    switch (style) {
    case TimerStyle::ring:
        return viewFile("Timer", "RingFace");
    case TimerStyle::bar:
        return viewFile("Timer", "BarFace");
    case TimerStyle::minimal:
        return viewFile("Timer", "MinimalFace");
    }
    __builtin_unreachable();
}

QFontMetricsF metrics(const HeadStart::UsedFont& used) {
    QFont font = QGuiApplication::font();
    font.setWeight(used.weight);
    font.setPixelSize(used.size);
    return QFontMetricsF(font);
}

} // namespace

HeadStart::HeadStart(QQmlEngine& engine, const AppSettings& settings) : _engine(engine), _settings(settings) {
    read(popoverFile());
}

void HeadStart::readParts() {
    for (const QUrl& file : partFiles(_settings.timerStyle()))
        read(file);
}

void HeadStart::readPage() {
    read(viewFile("Tasks", "TaskListView"));
}

std::vector<QUrl> HeadStart::partFiles(TimerStyle style) {
    return {viewFile("Popover", "TabSwitcher"), viewFile("Popover", "MusicRow"),
            viewFile("Popover", "TimerSection"), faceFile(style), viewFile("Popover", "HeaderView")};
}

void HeadStart::read(const QUrl& file) {
    _files.push_back(std::make_unique<QQmlComponent>(&_engine, file, QQmlComponent::Asynchronous));
}

QUrl HeadStart::popoverFile() {
    return viewFile("Popover", "Popover");
}

HeadStart::UsedFont HeadStart::noteFont() {
    return {QFont::Normal, 11};
}

HeadStart::UsedFont HeadStart::timeFont(TimerStyle style) {
    switch (style) {
    case TimerStyle::ring:
        return {QFont::DemiBold, 40};
    case TimerStyle::bar:
        return {QFont::DemiBold, 52};
    case TimerStyle::minimal:
        return {QFont::DemiBold, 60};
    }
    __builtin_unreachable();
}

std::span<const HeadStart::UsedFont> HeadStart::usedFonts() {
    static constexpr std::array fonts{
        UsedFont{QFont::Normal, 13},   UsedFont{QFont::Medium, 12},   UsedFont{QFont::Medium, 13},
        UsedFont{QFont::DemiBold, 11}, UsedFont{QFont::DemiBold, 12}, UsedFont{QFont::DemiBold, 13},
        UsedFont{QFont::DemiBold, 14},
    };
    return fonts;
}

void HeadStart::findFonts() const {
    for (const UsedFont& font : usedFonts())
        // More than its height: what is needed to place letters beside each other is read with the first
        // ones.
        [[maybe_unused]] const double width = metrics(font).horizontalAdvance(QStringLiteral("Focus"));
    // Qt keeps a font for each script, and digits alone and lines without words are of none.
    [[maybe_unused]] const double digit = metrics(timeFont(_settings.timerStyle())).horizontalAdvance(u'0');
    [[maybe_unused]] const double line = metrics(noteFont()).height();
}

} // namespace selvane
