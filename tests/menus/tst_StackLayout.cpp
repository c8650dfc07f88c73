#include "menus/StackLayout.h"
#include "support/TestMain.h"

class tst_StackLayout : public QObject
{
    Q_OBJECT

private slots:
    void the_next_page_is_shown_and_after_the_last_the_first()
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

    void a_single_page_stays()
    {
        QWidget parent;
        StackLayout layout(&parent);
        layout.addWidget(new QWidget);
        layout.setNextIndex();
        QCOMPARE(layout.currentIndex(), 0);
    }

    void nothing_happens_without_pages()
    {
        QWidget parent;
        StackLayout layout(&parent);
        layout.setNextIndex();
        QCOMPARE(layout.currentIndex(), -1);
    }
};

QN740_TEST_MAIN(tst_StackLayout)
#include "tst_StackLayout.moc"
