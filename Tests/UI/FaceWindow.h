#pragma once

#include "Selvane/UI/Controls/Look.h"
#include "Selvane/UI/Timer/TimerFaceModel.h"
#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"

#include <QImage>
#include <QQuickItem>
#include <QQuickView>
#include <QString>

#include <memory>

namespace selvane::test {

/// A window of a real Qt platform with the timer face in it, and a field beside it that can take the
/// keyboard.
///
///     FaceWindow face;
///     face.open();
///     face.click("25:00 remaining");
class FaceWindow {
public:
    FaceWindow() { harness.launch(); }

    /// Shows the window. `content` is what is drawn; the timer face unless it says otherwise.
    void open(const QByteArray& content = "TimerFace { anchors.centerIn: parent; model: root.model }");

    [[nodiscard]] TimerEngine& engine() { return harness.model().engine(); }
    [[nodiscard]] AppSettings& settings() { return harness.model().settings(); }
    [[nodiscard]] TimerFaceModel& model() { return *_model; }
    [[nodiscard]] QQuickView& window() { return *_view; }

    /// The visible item of that accessible name; null if there is none.
    [[nodiscard]] QQuickItem* find(const QString& name) const;
    /// The first item of that C++ class, also if it can't be seen.
    template <typename Item>
    [[nodiscard]] Item* item() const {
        return findItem<Item>(_view->contentItem());
    }
    /// The first item of that QML type, also if it can't be seen; null if there is none.
    [[nodiscard]] QQuickItem* itemOf(const char* type) const;
    /// What is drawn now.
    [[nodiscard]] QImage picture() { return _view->grabWindow(); }
    void click(const QString& name);
    /// Moves the pointer onto that control.
    void hover(const QString& name);
    /// Does what a screen reader does to press the control.
    void press(const QString& name);
    [[nodiscard]] QString focusedName() const;
    void type(const QString& text);
    void paste(const QString& text);

    test::ModelHarness harness;
    test::FakeAppearance appearance;
    /// How often Escape came through to the window.
    [[nodiscard]] int escapes() const { return _view->rootObject()->property("escapes").toInt(); }
    /// What the content wrote into `root.chosen`.
    [[nodiscard]] QString chosen() const { return _view->rootObject()->property("chosen").toString(); }

private:
    template <typename Item>
    [[nodiscard]] static Item* findItem(QQuickItem* parent) {
        if (auto* const found = qobject_cast<Item*>(parent))
            return found;
        for (QQuickItem* const child : parent->childItems()) {
            if (Item* const found = findItem<Item>(child))
                return found;
        }
        return nullptr;
    }

    std::unique_ptr<Look> _look;
    std::unique_ptr<TimerFaceModel> _model;
    std::unique_ptr<QQuickView> _view;
};

} // namespace selvane::test
