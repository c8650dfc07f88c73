#include "popups/PushButtonKey.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "touch/HeldKeys.h"

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

// A window with a sheet for all that is in it, a page with one for its keys, and a key.
struct Page
{
    Page(QPushButton* button, const QString& keys)
    {
        window.setStyleSheet(
            u"background-color:darkgray; border-width: 2px; border-style: solid; font-size: 30px;"_s);
        auto* page = new QWidget(&window);
        page->setStyleSheet(
            keys + u" {background-color: #303438; color: white; font-size: 20px;}"_s);
        button->setParent(page);
        button->setGeometry(4, 4, 130, 62);
        page->resize(200, 120);
        window.resize(200, 120);
        window.show();
    }

    QImage picture() { return window.grab().toImage().convertToFormat(QImage::Format_RGB32); }

    QWidget window;
};

// \return the largest difference between two pictures, in steps of a colour
int difference(const QImage& one, const QImage& other)
{
    int largest = one.size() == other.size() ? 0 : 255;
    for (int y = 0; y < one.height() && largest < 255; ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(a) - qRed(b)),
                std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
        }
    }
    return largest;
}

} // namespace

class tst_PushButtonKey : public QObject
{
    Q_OBJECT

private slots:
    void a_press_announces_the_text_on_release()
    {
        PushButtonKey key(u"q"_s);
        key.show();
        QVERIFY(QTest::qWaitForWindowExposed(&key));
        QSignalSpy pressed(&key, &PushButtonKey::keyPressed);
        QTest::mousePress(&key, Qt::LeftButton);
        QVERIFY(pressed.isEmpty());
        QCOMPARE(key.styleSheet(),
            u"background-color: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1,stop: 0 #8C8F8C, "_s
            u"stop: 1 #000000);"_s);
        QTest::mouseRelease(&key, Qt::LeftButton);
        QCOMPARE(pressed.size(), 1);
        QCOMPARE(pressed.first().first().toString(), u"q"_s);
        QCOMPARE(key.styleSheet(), u"color:white;border: 1px solid #000000;border-radius:6px;"_s);
    }

    void a_key_that_lets_go_looks_as_before()
    {
        QWidget window;
        auto* key = new PushButtonKey(u"q"_s, &window);
        window.resize(200, 100);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QSignalSpy pressed(key, &PushButtonKey::keyPressed);
        const QString sheet = key->styleSheet();
        QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, key->geometry().center());
        QVERIFY(key->styleSheet() != sheet);
        touch::letGo(&window);
        QCOMPARE(key->styleSheet(), sheet);
        QVERIFY(!key->isDown());
        QVERIFY(pressed.isEmpty());
    }

    void it_looks_as_the_style_paints_its_sheets_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isPressed");
        QTest::newRow("character") << u"q"_s << false;
        QTest::newRow("character, pressed") << u"q"_s << true;
        QTest::newRow("command") << u"BACKSPACE"_s << false;
        QTest::newRow("command, pressed") << u"DEL"_s << true;
    }
    void it_looks_as_the_style_paints_its_sheets()
    {
        QFETCH(QString, text);
        QFETCH(bool, isPressed);
        auto* key = new PushButtonKey(text);
        Page ours(key, u"PushButtonKey"_s);
        key->setDown(isPressed);
        if (isPressed) {
            emit key->pressed();
        }
        auto* styled = new QPushButton(text);
        styled->setStyleSheet(key->styleSheet());
        Page peer(styled, u"QPushButton"_s);
        styled->setDown(isPressed);
        // The corners are blended twice.
        const int found = difference(ours.picture(), peer.picture());
        QVERIFY2(found <= 2, qPrintable(QString::number(found)));
        QCOMPARE(key->font().pixelSize(), 20);
        QVERIFY(key->property("styleSheet").toString().isEmpty()); // the style does no work on it
    }

    void it_follows_the_sheets_around_it()
    {
        auto* key = new PushButtonKey(u"q"_s);
        Page page(key, u"PushButtonKey"_s);
        const QImage before = page.picture();
        key->parentWidget()->setStyleSheet(u"PushButtonKey {background-color: red;}"_s);
        QVERIFY(difference(page.picture(), before) > 100);
    }

    void command_keys_look_different()
    {
        QCOMPARE(PushButtonKey(u"DEL"_s).styleSheet(), u"background:lightgray;color:darkred;"_s);
    }

    void caps_toggles_at_each_press()
    {
        PushButtonKey key(u"CAPS"_s);
        QSignalSpy changed(&key, &PushButtonKey::capLocksChanged);
        key.click();
        key.click();
        QCOMPARE(changed.size(), 2);
        QCOMPARE(changed.at(0).first().toBool(), true);
        QCOMPARE(changed.at(1).first().toBool(), false);
    }

    void other_keys_do_not_change_the_caps_lock()
    {
        for (const QString& text : {u"c"_s, u"DEL"_s, u"BACKSPACE"_s}) {
            PushButtonKey key(text);
            QSignalSpy changed(&key, &PushButtonKey::capLocksChanged);
            key.click();
            QVERIFY(changed.isEmpty());
        }
    }

    void the_caps_lock_changes_single_characters_only_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("on");
        QTest::addColumn<QString>("off");
        QTest::newRow("letter") << "Q"
                                << "Q"
                                << "q";
        QTest::newRow("digit") << "7"
                               << "7"
                               << "7";
        QTest::newRow("command") << "RETURN"
                                 << "RETURN"
                                 << "RETURN";
        QTest::newRow("arrow") << "<<-"
                               << "<<-"
                               << "<<-";
        QTest::newRow("lower command") << "del"
                                       << "del"
                                       << "del";
    }
    void the_caps_lock_changes_single_characters_only()
    {
        QFETCH(QString, text);
        PushButtonKey key(text);
        key.getCapLocksChanged(false);
        QTEST(key.text(), "off");
        key.getCapLocksChanged(true);
        QTEST(key.text(), "on");
    }
};

QN740_TEST_MAIN(tst_PushButtonKey)
#include "tst_PushButtonKey.moc"
