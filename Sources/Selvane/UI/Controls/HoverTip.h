#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

class QQuickItem;

namespace selvane {

/// The words that explain the item they are declared in, while the pointer rests on it or the keyboard is
/// there. The bubble exists only while it is seen. It is no popup: keys and clicks pass it by. Main thread.
class HoverTip : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// Without words there is no bubble.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    /// The wish for the bubble, as a binding: it comes after the delay and goes at once.
    Q_PROPERTY(bool visible READ isVisible WRITE setVisible NOTIFY visibleChanged FINAL)
    /// In milliseconds, 700 in the beginning.
    Q_PROPERTY(int delay READ delay WRITE setDelay NOTIFY delayChanged FINAL)

public:
    explicit HoverTip(QObject* parent = nullptr);
    ~HoverTip() override;

    [[nodiscard]] const QString& text() const { return _text; }
    void setText(const QString& text);
    [[nodiscard]] bool isVisible() const { return _visible; }
    void setVisible(bool visible);
    [[nodiscard]] int delay() const { return _delay; }
    void setDelay(int delay);

    /// What is seen now; null if nothing is.
    [[nodiscard]] QQuickItem* bubble() const;

Q_SIGNALS:
    void textChanged();
    void visibleChanged();
    void delayChanged();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] QQuickItem* target() const;
    void show();
    /// Where the item is now.
    void place();
    void hide();

    QString _text;
    bool _visible = false;
    int _delay = 700;
    QBasicTimer _timer;
    QPointer<QQuickItem> _bubble;
    QMetaObject::Connection _withItem;
    QMetaObject::Connection _withWindow;
    QMetaObject::Connection _withFrames;
};

} // namespace selvane
