#include "FaceWindow.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <gtest/gtest.h>

namespace selvane::test {

namespace {

QAccessibleInterface* findControl(QAccessibleInterface* item, const QString& name) {
    if (item->text(QAccessible::Name) == name && !item->state().invisible)
        return item;
    for (int index = 0; index < item->childCount(); ++index) {
        if (QAccessibleInterface* const found = findControl(item->child(index), name))
            return found;
    }
    return nullptr;
}

QQuickItem* findType(QQuickItem* parent, const QByteArray& prefix) {
    if (QByteArray(parent->metaObject()->className()).startsWith(prefix))
        return parent;
    for (QQuickItem* const child : parent->childItems()) {
        if (QQuickItem* const found = findType(child, prefix))
            return found;
    }
    return nullptr;
}

} // namespace

void FaceWindow::open(const QByteArray& content) {
    _view.reset();
    _look = std::make_unique<Look>(settings(), appearance);
    _model = std::make_unique<TimerFaceModel>(harness.model());
    _view = std::make_unique<QQuickView>();
    QQmlComponent component(_view->engine());
    component.setData("import QtQuick\n"
                      "import Selvane.Controls\n"
                      "import Selvane.Timer\n"
                      "Rectangle {\n"
                      "    id: root\n"
                      "    required property TimerFaceModel model\n"
                      "    required property Look look\n"
                      "    property int escapes: 0\n"
                      "    property string chosen\n"
                      "    width: 348; height: 260; color: Theme.surface\n"
                      "    Binding { target: Theme; property: 'look'; value: root.look }\n"
                      "    Shortcut { sequence: 'Escape'; onActivated: root.escapes += 1 }\n"
                      "    Item {\n"
                      "        width: 20; height: 20; activeFocusOnTab: true; focus: true\n"
                      "        Accessible.role: Accessible.Button; Accessible.name: 'elsewhere'\n"
                      "        TapHandler { onTapped: parent.forceActiveFocus() }\n"
                      "    }\n" +
                          content + "\n}\n",
                      QUrl());
    QObject* const root =
        component.createWithInitialProperties({{QStringLiteral("model"), QVariant::fromValue(_model.get())},
                                               {QStringLiteral("look"), QVariant::fromValue(_look.get())}});
    ASSERT_NE(root, nullptr) << component.errorString().toStdString();
    _view->setContent(QUrl(), nullptr, root);
    _view->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(_view.get()));
    // Away from what the pointer rested on in another window.
    QTest::mouseMove(_view.get(), QPoint(_view->width() - 1, _view->height() - 1));
}

QQuickItem* FaceWindow::find(const QString& name) const {
    QAccessibleInterface* const control =
        findControl(QAccessible::queryAccessibleInterface(_view.get()), name);
    return control ? qobject_cast<QQuickItem*>(control->object()) : nullptr;
}

QQuickItem* FaceWindow::itemOf(const char* type) const {
    return findType(_view->contentItem(), QByteArray(type) + "_QML");
}

void FaceWindow::hover(const QString& name) {
    QQuickItem* const item = find(name);
    ASSERT_NE(item, nullptr) << name.toStdString();
    const QPoint middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    QTest::mouseMove(_view.get(), middle + QPoint(1, 1));
    QTest::mouseMove(_view.get(), middle);
    EXPECT_TRUE(QTest::qWaitFor([&] { return item->property("hovered").toBool(); })) << name.toStdString();
}

void FaceWindow::click(const QString& name) {
    QQuickItem* const item = find(name);
    ASSERT_NE(item, nullptr) << name.toStdString();
    QTest::mouseClick(_view.get(), Qt::LeftButton, {},
                      item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    QCoreApplication::processEvents();
}

void FaceWindow::press(const QString& name) {
    QAccessibleInterface* const control =
        findControl(QAccessible::queryAccessibleInterface(_view.get()), name);
    ASSERT_NE(control, nullptr) << name.toStdString();
    ASSERT_NE(control->actionInterface(), nullptr) << name.toStdString();
    control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
}

QString FaceWindow::focusedName() const {
    QQuickItem* const item = _view->activeFocusItem();
    QAccessibleInterface* const control = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    return control ? control->text(QAccessible::Name) : QString();
}

void FaceWindow::type(const QString& text) {
    for (const QChar character : text)
        QTest::keyClick(_view.get(), character.toLatin1());
}

void FaceWindow::paste(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(_view.get(), Qt::Key_V, Qt::ControlModifier);
}

} // namespace selvane::test
