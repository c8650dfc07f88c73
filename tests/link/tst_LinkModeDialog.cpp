#include "link/LinkModeDialog.h"

#include "support/Screen.h"
#include "support/TestMain.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>

namespace {
const QRect Screen(0, 0, 800, 480);

QStringList checked(const QWidget& dialog)
{
    QStringList names;
    for (const QRadioButton* mode : dialog.findChildren<QRadioButton*>()) {
        if (mode->isChecked()) {
            names += mode->objectName();
        }
    }
    return names;
}
} // namespace

class tst_LinkModeDialog : public QObject
{
    Q_OBJECT

private slots:
    void it_names_the_modes()
    {
        LinkModeDialog dialog;
        QCOMPARE(dialog.title(), QStringLiteral("Link Mode"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("QN740 Configuration Settings"));
        QCOMPARE(
            dialog.styleSheet(), QStringLiteral("background-color:darkgray; font-size: 22px; "));
        const auto* title = dialog.findChild<QLabel*>(QStringLiteral("titleLabel"));
        QVERIFY(title != nullptr);
        QCOMPARE(title->text(), dialog.windowTitle());
        QVERIFY(dialog.isWindow());
        QVERIFY(!dialog.isModal());
        dialog.showIn(Screen);
        const auto modes = dialog.findChildren<QRadioButton*>();
        QCOMPARE(modes.size(), 3);
        QCOMPARE(modes.at(0)->text(), QStringLiteral("No Linking"));
        // The doubled "&&" is shown as "&".
        QCOMPARE(modes.at(1)->text(),
            QStringLiteral("Diversity Linking - All Tuners && Demodulators Linked"));
        QCOMPARE(modes.at(2)->text(),
            QStringLiteral("Frequency Diversity Linking - All Demodulators Linked"));
        QVERIFY(modes.at(0)->y() < modes.at(1)->y() && modes.at(1)->y() < modes.at(2)->y());
        const auto* close = buttonWithText(&dialog, QStringLiteral("Close"));
        QVERIFY(close != nullptr);
        QCOMPARE(close->width(), 150);
        QVERIFY(close->height() >= 55);
        QVERIFY(close->y() > modes.at(2)->y());
        QVERIFY(qAbs(close->geometry().center().x() - dialog.rect().center().x()) <= 1);
    }

    void its_icon_is_the_globe()
    {
        const LinkModeDialog dialog;
        QVERIFY(QFile::exists(QStringLiteral(":/MyFiles/TORVA-globe.png")));
        QVERIFY(!dialog.windowIcon().isNull());
    }

    void setting_a_mode_emits_its_signal_once_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("button");
        QTest::newRow("none") << 0 << "noLinking";
        QTest::newRow("diversity") << 1 << "diversityLinking";
        QTest::newRow("frequency diversity") << 2 << "frequencyDiversityLinking";
        QTest::newRow("3") << 3 << QString();
        QTest::newRow("-1") << -1 << QString();
    }
    void setting_a_mode_emits_its_signal_once()
    {
        QFETCH(int, mode);
        QFETCH(QString, button);
        LinkModeDialog dialog;
        QSignalSpy master(&dialog, &LinkModeDialog::masterToggled);
        QSignalSpy div(&dialog, &LinkModeDialog::divToggled);
        QSignalSpy freq(&dialog, &LinkModeDialog::freqToggled);
        dialog.setMode(mode);
        QCOMPARE(master.size(), mode == 0 ? 1 : 0);
        QCOMPARE(div.size(), mode == 1 ? 1 : 0);
        QCOMPARE(freq.size(), mode == 2 ? 1 : 0);
        QCOMPARE(checked(dialog), button.isEmpty() ? QStringList() : QStringList{button});
    }

    void showing_a_mode_does_not_emit_its_signal()
    {
        LinkModeDialog dialog;
        dialog.setMode(0);
        QSignalSpy master(&dialog, &LinkModeDialog::masterToggled);
        QSignalSpy freq(&dialog, &LinkModeDialog::freqToggled);
        dialog.showMode(2);
        QCOMPARE(checked(dialog), QStringList{QStringLiteral("frequencyDiversityLinking")});
        QCOMPARE(freq.size(), 0);
        // The button that is no longer checked emits its signal, which nothing acts upon.
        QCOMPARE(master.size(), 1);
        QCOMPARE(master.first().first().toBool(), false);
        dialog.showMode(9);
        QCOMPARE(checked(dialog), QStringList{QStringLiteral("frequencyDiversityLinking")});
    }

    void a_touch_anywhere_in_the_row_chooses()
    {
        LinkModeDialog dialog;
        dialog.setMode(1);
        dialog.showIn(Screen);
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QSignalSpy master(&dialog, &LinkModeDialog::masterToggled);
        const auto* mode = dialog.findChild<QRadioButton*>(QStringLiteral("noLinking"));
        const QPoint corner = mode->geometry().bottomRight() - QPoint(2, 2);
        QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, Qt::NoModifier, corner);
        QCOMPARE(master.size(), 1);
        QVERIFY(mode->isChecked());
    }

    void close_closes_and_deletes_it()
    {
        QPointer<LinkModeDialog> dialog = new LinkModeDialog;
        dialog->showIn(Screen);
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        QSignalSpy closed(dialog, &LinkModeDialog::closed);
        clickOn(buttonWithText(dialog, QStringLiteral("Close")));
        QCOMPARE(closed.size(), 1);
        QTRY_VERIFY(dialog == nullptr);
    }

    void the_window_system_closes_it_the_same_way()
    {
        QPointer<LinkModeDialog> dialog = new LinkModeDialog;
        dialog->showIn(Screen);
        QSignalSpy closed(dialog, &LinkModeDialog::closed);
        QVERIFY(dialog->close());
        QCOMPARE(closed.size(), 1);
        QTRY_VERIFY(dialog == nullptr);
    }

    void it_stands_in_the_middle_of_its_area()
    {
        for (const QRect& area : {Screen, QRect(100, 50, 800, 480), QRect(0, 0, 400, 200)}) {
            LinkModeDialog dialog;
            dialog.showIn(area);
            QVERIFY(area.contains(dialog.frameGeometry()) || area.width() < 800);
            const QPoint off = dialog.frameGeometry().center() - area.center();
            QVERIFY(area.width() < 800 || (qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1));
        }
    }
};

QN740_TEST_MAIN(tst_LinkModeDialog)
#include "tst_LinkModeDialog.moc"
