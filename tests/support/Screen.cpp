#include "support/Screen.h"

#include <QPointer>
#include <QWidget>
#include <QtTest>

void whenModal(const std::function<void(QWidget*)>& then)
{
    const auto check = [then](QWidget* modal) {
        const QPointer<QWidget> dialog = modal;
        then(dialog);
        if (QTest::currentTestFailed() && dialog != nullptr) {
            dialog->close();
        }
    };
    whenModal(check, [] { QTest::qFail("no modal dialog came up", __FILE__, __LINE__); });
}
