#include "app/StatusBar.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

class tst_StatusBar : public QObject
{
    Q_OBJECT

private slots:
    void the_view_button_names_the_view_that_follows()
    {
        StatusBar bar;
        const auto* button = part<QPushButton>(bar, "scopesButton");
        QCOMPARE(button->text(), QString("Scopes"));
        bar.setNextView(Views::Scopes, Views::Spectrum);
        QCOMPARE(button->text(), QString("Spectrum"));
        bar.setNextView(Views::Spectrum, Views::Menus);
        QCOMPARE(button->text(), QString("Menu"));
        bar.setNextView(Views::Menus, Views::Scopes);
        QCOMPARE(button->text(), QString("Scopes"));
    }

    void each_button_is_reported_by_its_own_signal()
    {
        StatusBar bar;
        bar.resize(800, 50);
        bar.show();
        const QSignalSpy linking(&bar, &StatusBar::linkingPressed);
        const QSignalSpy mainMenu(&bar, &StatusBar::mainMenuPressed);
        const QSignalSpy view(&bar, &StatusBar::viewPressed);
        const auto counts = [&] {
            return QList<qsizetype>{linking.size(), mainMenu.size(), view.size()};
        };
        clickOn(part<QPushButton>(bar, "linkButton"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 0, 0}));
        clickOn(part<QPushButton>(bar, "mainMenuButton"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 0}));
        clickOn(part<QPushButton>(bar, "scopesButton"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 1}));
        bar.setLinkingEnabled(false);
        clickOn(part<QPushButton>(bar, "linkButton"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 1}));
    }

    void texts_are_shown()
    {
        StatusBar bar;
        QCOMPARE(bar.currentMessage(), QString("TORVA QN740 - Start Up"));
        for (const QStringList& ignored : {QStringList(), QStringList{"x", "Text"},
                 QStringList{"", "Text"}, QStringList{"1.5", "Text"}}) {
            bar.takeText(ignored);
            QCOMPARE(bar.currentMessage(), QString("TORVA QN740 - Start Up"));
        }
        bar.takeText({"0", "Ready"});
        QCOMPARE(bar.currentMessage(), QString("Ready"));
        bar.showMenuName("Tuner");
        QCOMPARE(bar.currentMessage(), QString("QN740 Menu - Tuner"));
        bar.setLinkMode("Diversity Mode");
        QCOMPARE(part<QLabel>(bar, "statusLabel")->text(), QString("Diversity Mode"));
        bar.takeText({"50", "Soon gone"});
        QTRY_COMPARE(bar.currentMessage(), QString());
    }
};

QN740_TEST_MAIN(tst_StatusBar)
#include "tst_StatusBar.moc"
