#include "ControlsFixture.h"

#include <QQmlComponent>

namespace selvane::test {

namespace {

QAccessibleInterface* find(QAccessibleInterface* item, const QString& name) {
    if (!item)
        return nullptr;
    if (item->text(QAccessible::Name) == name)
        return item;
    for (int index = 0; index < item->childCount(); ++index) {
        if (QAccessibleInterface* const found = find(item->child(index), name))
            return found;
    }
    return nullptr;
}

} // namespace

ControlsFixture::ControlsFixture() {
    QQmlComponent component(&engine);
    component.setData("import QtQml\nimport Selvane.Controls\nQtObject { property ThemeValues it: Theme }",
                      {});
    _theme.reset(component.create());
    EXPECT_NE(_theme, nullptr) << component.errorString().toStdString();
    theme().setLook(&look);
    window.resize(348, 420);
    window.setColor(theme().surface());
}

ControlsFixture::~ControlsFixture() = default;

QQuickItem* ControlsFixture::show(const QByteArray& text) {
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport QtQuick.Layouts\nimport Selvane.Controls\n" + text,
                      QUrl(QStringLiteral("test.qml")));
    QObject* const made = component.create();
    EXPECT_NE(made, nullptr) << component.errorString().toStdString();
    QQuickItem* const item = qobject_cast<QQuickItem*>(made);
    if (!item)
        return nullptr;
    item->setParent(window.contentItem());
    item->setParentItem(window.contentItem());
    item->setPosition({40, 60});
    window.show();
    window.requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    return item;
}

QAccessibleInterface* ControlsFixture::accessible(const QString& name) {
    return find(QAccessible::queryAccessibleInterface(&window), name);
}

void ControlsFixture::pressAccessibly(const QString& name) {
    QAccessibleInterface* const control = accessible(name);
    ASSERT_NE(control, nullptr) << name.toStdString();
    ASSERT_NE(control->actionInterface(), nullptr);
    control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

} // namespace selvane::test
