#include "menus/Key.h"
#include "support/Screen.h"
#include "support/TestMain.h"

class tst_Key : public QObject
{
    Q_OBJECT

private slots:
    void a_new_key_is_empty()
    {
        const Key key;
        QVERIFY(key.label.isEmpty() && key.keyId.isEmpty() && key.command.isEmpty());
        QVERIFY(key.linkedKeys.isEmpty() && key.itemIds.isEmpty());
        QVERIFY(!key.tog());
        QVERIFY(key.GetKey() == nullptr);
    }
};

QN740_TEST_MAIN(tst_Key)
#include "tst_Key.moc"
