#include "support/Screen.h"
#include "support/TestMain.h"

#include <QDialog>
#include <QMainWindow>

// The pictures of the tests must show the windows in the order in which the operator sees them.
class tst_Screen : public QObject
{
    Q_OBJECT

    static void show(QWidget& window, const QColor& colour, const QRect& place)
    {
        window.setPalette(QPalette(colour));
        window.setAutoFillBackground(true);
        window.setGeometry(place);
        window.show();
    }

    static QColor at(int x, int y) { return grabScreen().toImage().pixelColor(x, y); }

private slots:
    void a_later_window_is_over_an_earlier_one_and_the_panel_under_both()
    {
        QDialog first;
        QMainWindow panel;
        QDialog second;
        show(first, Qt::red, {100, 100, 300, 300});
        show(panel, Qt::green, {0, 0, 800, 480});
        show(second, Qt::blue, {200, 200, 100, 100});
        QCOMPARE(at(10, 10), QColor(Qt::green));
        QCOMPARE(at(150, 150), QColor(Qt::red));
        QCOMPARE(at(250, 250), QColor(Qt::blue));
    }

    void a_modal_window_is_over_others_but_not_over_its_own()
    {
        QDialog editor;
        editor.setModal(true);
        QDialog error(&editor);
        error.setModal(true);
        QDialog message;
        show(editor, Qt::red, {100, 100, 300, 300});
        show(message, Qt::blue, {150, 150, 100, 100});
        QCOMPARE(at(200, 200), QColor(Qt::red));
        message.windowHandle()->setTransientParent(editor.windowHandle());
        QCOMPARE(at(200, 200), QColor(Qt::blue));
        show(error, Qt::green, {180, 180, 100, 100});
        QCOMPARE(at(200, 200), QColor(Qt::green));
        QCOMPARE(at(160, 160), QColor(Qt::blue));
        QCOMPARE(at(110, 110), QColor(Qt::red));
        error.hide();
        QCOMPARE(at(200, 200), QColor(Qt::blue));
    }

    void a_pop_up_list_is_on_top()
    {
        QDialog editor;
        editor.setModal(true);
        QWidget list(nullptr, Qt::Popup);
        list.winId(); // made first, opened last
        show(editor, Qt::red, {100, 100, 300, 300});
        show(list, Qt::blue, {150, 150, 100, 100});
        QCOMPARE(at(200, 200), QColor(Qt::blue));
    }
};

QN740_TEST_MAIN(tst_Screen)
#include "tst_Screen.moc"
