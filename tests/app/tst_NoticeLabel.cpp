#include "app/NoticeLabel.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_NoticeLabel : public QObject
{
    Q_OBJECT

private slots:
    void it_says_what_is_wrong_and_is_hidden_when_nothing_is_data()
    {
        QTest::addColumn<LinkState>("state");
        QTest::addColumn<QString>("text");
        QTest::newRow("closed") << LinkState::Closed << "No connection to the main unit";
        QTest::newRow("silent") << LinkState::Silent << "The main unit is silent";
        QTest::newRow("alive") << LinkState::Alive << "";
    }

    void it_says_what_is_wrong_and_is_hidden_when_nothing_is()
    {
        QFETCH(LinkState, state);
        QFETCH(QString, text);
        QWidget window;
        window.show();
        NoticeLabel label(&window);
        QVERIFY(label.isHidden());
        QCOMPARE(label.objectName(), u"noticeLabel"_s);
        label.setState(LinkState::Closed);
        label.setState(state);
        QCOMPARE(label.text(), text);
        QCOMPARE(label.isVisible(), !text.isEmpty());
    }

    void its_text_is_whole_in_both_places_data()
    {
        QTest::addColumn<LinkState>("state");
        QTest::newRow("closed") << LinkState::Closed;
        QTest::newRow("silent") << LinkState::Silent;
    }

    void its_text_is_whole_in_both_places()
    {
        QFETCH(LinkState, state);
        QWidget window;
        window.resize(800, 480);
        auto* bar = new QWidget(&window);
        bar->setGeometry(0, 430, 800, 50);
        window.show();
        auto* label = new NoticeLabel(bar);
        label->setState(state);
        label->standIn(bar, bar->rect().adjusted(2, 2, -2, -2));
        QCOMPARE(label->parentWidget(), bar);
        QVERIFY(label->fontInfo().pixelSize() >= 14);
        QVERIFY(label->isVisible());
        QVERIFY(label->heightForWidth(label->width()) <= label->height());
        QVERIFY(bar->rect().contains(label->geometry()));
        label->standOver(&window);
        QCOMPARE(label->parentWidget(), &window);
        QVERIFY(label->isVisible());
        QVERIFY(label->sizeHint().width() <= label->width());
        QVERIFY(label->sizeHint().height() <= label->height());
        QVERIFY(window.rect().contains(label->geometry()));
        QCOMPARE(label->geometry().bottom(), window.rect().bottom());
    }
};

QN740_TEST_MAIN(tst_NoticeLabel)
#include "tst_NoticeLabel.moc"
