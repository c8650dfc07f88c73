#include "app/StatusBar.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_StatusBar : public QObject
{
    Q_OBJECT

private slots:
    void the_view_button_names_the_view_that_follows()
    {
        StatusBar bar;
        const auto* button = part<QPushButton>(bar, "scopesButton");
        QCOMPARE(button->text(), u"Scopes"_s);
        bar.setNextView(Views::Scopes, Views::Spectrum);
        QCOMPARE(button->text(), u"Spectrum"_s);
        bar.setNextView(Views::Spectrum, Views::Menus);
        QCOMPARE(button->text(), u"Menu"_s);
        bar.setNextView(Views::Menus, Views::Scopes);
        QCOMPARE(button->text(), u"Scopes"_s);
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

    void each_message_sets_its_text()
    {
        StatusBar bar;
        QCOMPARE(bar.currentMessage(), u"TORVA QN740 - Start Up"_s);
        for (const QStringList& ignored : {QStringList(), QStringList{u"x"_s, u"Text"_s},
                 QStringList{u""_s, u"Text"_s}, QStringList{u"1.5"_s, u"Text"_s}}) {
            bar.takeText(ignored);
            QCOMPARE(bar.currentMessage(), u"TORVA QN740 - Start Up"_s);
        }
        bar.takeText({u"0"_s, u"Ready"_s});
        QCOMPARE(bar.currentMessage(), u"Ready"_s);
        bar.showMenuName(u"Tuner"_s);
        QCOMPARE(bar.currentMessage(), u"QN740 Menu - Tuner"_s);
        bar.setLinkMode(u"Diversity Mode"_s);
        QCOMPARE(part<QLabel>(bar, "statusLabel")->text(), u"Diversity Mode"_s);
        bar.takeText({u"50"_s, u"Soon gone"_s});
        QTRY_COMPARE(bar.currentMessage(), QString());
    }
};

QN740_TEST_MAIN(tst_StatusBar)
#include "tst_StatusBar.moc"
