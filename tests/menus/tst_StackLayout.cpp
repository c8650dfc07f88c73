#include "menus/StackLayout.h"
#include "support/TestMain.h"

class tst_StackLayout : public QObject
{
    Q_OBJECT

private slots:
    void the_next_page_follows_and_the_first_follows_the_last()
    {
        QWidget parent;
        StackLayout layout(&parent);
        for (int i = 0; i < 3; ++i) {
            layout.addWidget(new QWidget);
        }
        QList<int> shown;
        for (int i = 0; i < 4; ++i) {
            layout.setNextIndex();
            shown += layout.currentIndex();
        }
        QCOMPARE(shown, (QList<int>{1, 2, 0, 1}));
    }

    void a_single_page_follows_itself()
    {
        QWidget parent;
        StackLayout layout(&parent);
        layout.addWidget(new QWidget);
        layout.setNextIndex();
        QCOMPARE(layout.currentIndex(), 0);
    }

    void without_pages_nothing_happens()
    {
        QWidget parent;
        StackLayout layout(&parent);
        layout.setNextIndex();
        QCOMPARE(layout.currentIndex(), -1);
    }
};

QN740_TEST_MAIN(tst_StackLayout)
#include "tst_StackLayout.moc"
