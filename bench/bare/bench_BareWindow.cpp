// A bare window of the panel's size with a status bar, in the panel's style and font: what a
// program of Qt's widgets costs before it does anything. It runs until it is ended.
#include <QApplication>
#include <QMainWindow>
#include <QStatusBar>
#include <QStyleFactory>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    QApplication::setFont(font);
    QMainWindow window;
    window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    window.setFixedSize(800, 480);
    window.setCentralWidget(new QWidget);
    window.statusBar()->showMessage(QStringLiteral("A bare window"));
    window.show();
    return QApplication::exec();
}
