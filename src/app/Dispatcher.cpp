#include "app/Dispatcher.h"

#include "app/MainWindow.h"
#include "wire/Message.h"

#include <array>

namespace {

struct Entry
{
    QLatin1String word;
    void (MainWindow::*slot)(const QStringList& fields);
};

constexpr std::array<Entry, 24> Table{{
    {QLatin1String("AK"), &MainWindow::process_AK_key},
    {QLatin1String("SK"), &MainWindow::process_SK_key},
    {QLatin1String("CK"), &MainWindow::process_CK_key},
    {QLatin1String("CV"), &MainWindow::process_CV_key},
    {QLatin1String("CM"),
        &MainWindow::process_MM_key}, // the main menu's handler, not one of its own
    {QLatin1String("SB"), &MainWindow::process_SB_key},
    {QLatin1String("DB"), &MainWindow::process_DB_key},
    {QLatin1String("PING"), &MainWindow::process_PING},
    {QLatin1String("Slave"), &MainWindow::process_slave},
    {QLatin1String("SQ"), &MainWindow::process_SQ},
    {QLatin1String("SM"), &MainWindow::process_SM},
    {QLatin1String("VER"), &MainWindow::process_VER},
    {QLatin1String("SH"), &MainWindow::process_SH},
    {QLatin1String("MS"), &MainWindow::process_MM_key_PAX},
    {QLatin1String("PAX"), &MainWindow::process_PAX},
    {QLatin1String("LC"), &MainWindow::process_LC},
    {QLatin1String("EI"), &MainWindow::process_EI_key},
    {QLatin1String("SP"), &MainWindow::process_SP_key},
    {QLatin1String("IK"), &MainWindow::process_IK_key},
    {QLatin1String("SF"), &MainWindow::process_SF_key},
    {QLatin1String("HM"), &MainWindow::process_HM_key},
    {QLatin1String("ST"), &MainWindow::process_ST},
    {QLatin1String("PM"), &MainWindow::process_PM},
    {QLatin1String("CLEAR"), &MainWindow::process_CLEAR},
}};

} // namespace

Dispatcher::Dispatcher(MainWindow& window)
    : m_window(window)
{
}

bool Dispatcher::dispatch(const QString& message) const
{
    QStringList fields = wire::fields(message);
    const QString word = fields.takeFirst();
    for (const Entry& entry : Table) {
        if (word == entry.word) {
            (m_window.*entry.slot)(fields);
            return true;
        }
    }
    return false;
}

QStringList Dispatcher::words()
{
    QStringList words;
    for (const Entry& entry : Table) {
        words += entry.word;
    }
    return words;
}
