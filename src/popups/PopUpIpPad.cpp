#include "popups/PopUpIpPad.h"

#include "popups/EntryErrorBox.h"
#include "popups/PadDialog.h"

namespace {

constexpr int Columns = 4;
constexpr int CurrentColumns = 2;
constexpr int MinEntryWidth = 250;

// Quirk: almost, but not exactly, the sheets of the number pad. See "Quirks" in
// docs/architecture.md.
QString cancelStyle()
{
    return QStringLiteral(
        "QPushButton {background-color:red; color:white; font-size: 26px;  } QPushButton:pressed {background-color: #4169e1;}");
}

QString backspaceStyle()
{
    return QStringLiteral(
        "QPushButton {background-color:#b0c4de; color:black;} QPushButton:pressed {background-color: #4169e1;} ");
}

QString enterStyle()
{
    return QStringLiteral(
        "QPushButton {background-color:green; color:black;} QPushButton:pressed {background-color: #4169e1;} ");
}

} // namespace

PopUpIpPad::PopUpIpPad(QObject* parent)
    : Key(parent)
{
}

PopUpIpPad::~PopUpIpPad()
{
    delete m_dialog;
}

QString PopUpIpPad::new_pop_IP_NumberPad(const QString& title, const QString& currentAddress)
{
    if (m_dialog != nullptr) {
        return {}; // it is open already
    }
    m_entry.clear();
    m_result.clear();
    const QPointer<PopUpIpPad> self(this);
    buildDialog(title, currentAddress);
    const int outcome = m_dialog->exec();
    if (self == nullptr) {
        return {};
    }
    delete m_dialog;
    if (outcome != QDialog::Accepted) {
        m_result.clear();
    }
    return m_result;
}

void PopUpIpPad::buildDialog(const QString& title, const QString& currentAddress)
{
    m_dialog = new PadDialog(
        QStringLiteral("PopUpIpPad"), title, Qt::WindowFlags(), Columns, CurrentColumns);
    m_dialog->setStyleSheet(
        QStringLiteral("QMenuBar {background-color: #F5F5F5; font-size: 12px;}"));
    const QString current = QStringLiteral("IPv4: %1").arg(currentAddress);
    m_dialog->setWindowTitle(current);
    // The unit's screen has no window frames, so the window title alone would not be seen.
    m_dialog->setCurrentValueText(current);
    m_dialog->entryLabel->setMinimumWidth(MinEntryWidth);
    showEntry();

    PadKeys* keys = m_dialog->keys;
    keys->addDigits(PadKeys::Digits::Calculator);
    keys->addCharacter(QStringLiteral("."), 4, 1);
    connect(keys->addKey(QStringLiteral("CE/Cancel"), cancelStyle(), 4, 2), &QPushButton::clicked,
        this, &PopUpIpPad::clear_entry);
    connect(keys->addKey(QStringLiteral("BackSpace"), backspaceStyle(), 1, 3),
        &QPushButton::clicked, this, &PopUpIpPad::backspace);
    connect(keys->addKey(QStringLiteral("Enter"), enterStyle(), 4, 3), &QPushButton::clicked, this,
        &PopUpIpPad::check_number);

    connect(keys, &PadKeys::character, this, &PopUpIpPad::num_button_clicked);
    connect(this, &PopUpIpPad::valid_entry, m_dialog, &QDialog::accept);
    connect(this, &PopUpIpPad::reject_entry, m_dialog, &QDialog::reject);
}

void PopUpIpPad::num_button_clicked(const QString& key)
{
    m_entry.append(key);
    showEntry();
}

void PopUpIpPad::check_number()
{
    m_result = m_entry.text();
    if (m_entry.isValid()) {
        emit valid_entry();
    } else {
        entryErrorBox::showAddressFormat(m_dialog);
    }
}

void PopUpIpPad::backspace()
{
    m_entry.backspace();
    showEntry();
}

void PopUpIpPad::clear_entry()
{
    if (m_entry.isEmpty()) {
        emit reject_entry();
    } else {
        m_entry.clear();
        showEntry();
    }
}

void PopUpIpPad::showEntry()
{
    if (m_dialog != nullptr) {
        m_dialog->setEntryText(m_entry.text());
    }
}
