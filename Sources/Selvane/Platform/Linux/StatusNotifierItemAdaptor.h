#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtDBus/QDBusAbstractAdaptor>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusObjectPath>

namespace selvane {

class StatusNotifierItem;

/// One picture as it goes over the bus: `width` times `height` pixels of 32 bits, ARGB, in network byte
/// order.
struct NotifierPixmap { // (iiay)
    int width = 0;
    int height = 0;
    QByteArray bytes;
};
using NotifierPixmapList = QList<NotifierPixmap>;

struct NotifierToolTip { // (sa(iiay)ss)
    QString iconName;
    NotifierPixmapList pixmaps;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip);

/// What a panel asks of the item, and what it is told.
class StatusNotifierItemAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowID)
    Q_PROPERTY(QString IconName READ noName)
    Q_PROPERTY(QString IconThemePath READ noName)
    Q_PROPERTY(QList<selvane::NotifierPixmap> IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ iconAccessibleDescription)
    Q_PROPERTY(QString OverlayIconName READ noName)
    Q_PROPERTY(QList<selvane::NotifierPixmap> OverlayIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionIconName READ noName)
    Q_PROPERTY(QList<selvane::NotifierPixmap> AttentionIconPixmap READ attentionIconPixmap)
    Q_PROPERTY(QString AttentionMovieName READ noName)
    Q_PROPERTY(QString AttentionAccessibleDesc READ iconAccessibleDescription)
    Q_PROPERTY(selvane::NotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)
public:
    explicit StatusNotifierItemAdaptor(StatusNotifierItem* item);

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const { return QStringLiteral("selvane"); }
    [[nodiscard]] QString title() const { return QStringLiteral("Selvane"); }
    [[nodiscard]] QString status() const;
    [[nodiscard]] int windowID() const { return 0; }
    [[nodiscard]] QString noName() const { return {}; }
    [[nodiscard]] NotifierPixmapList noPixmap() const { return {}; }
    [[nodiscard]] NotifierPixmapList iconPixmap() const;
    [[nodiscard]] NotifierPixmapList attentionIconPixmap() const;
    [[nodiscard]] QString iconAccessibleDescription() const;
    [[nodiscard]] NotifierToolTip toolTip() const;
    [[nodiscard]] bool itemIsMenu() const { return false; }
    [[nodiscard]] QDBusObjectPath menu() const;
    [[nodiscard]] QString label() const;
    [[nodiscard]] QString labelGuide() const;

public Q_SLOTS:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);
    void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    void NewMenu();
    void XAyatanaNewLabel(const QString& label, const QString& guide);

private:
    StatusNotifierItem& _item;
};

} // namespace selvane
