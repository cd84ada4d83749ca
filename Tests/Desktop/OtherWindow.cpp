#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>

#include <cstdlib>

namespace {

/// A window of one colour.
class PlainWindow final : public QRasterWindow {
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(0, 0, width(), height(), QColor(0x336655));
    }
};

} // namespace

/// Another program as far as a desktop has to do with it: a window, with the title that is given.
int main(int argc, char* argv[]) {
    const QGuiApplication application(argc, argv);
    if (argc != 2)
        return EXIT_FAILURE;
    PlainWindow window;
    window.setTitle(QString::fromLocal8Bit(argv[1]));
    window.resize(300, 200);
    window.show();
    return application.exec();
}
