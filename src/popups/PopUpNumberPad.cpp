#include "popups/PopUpNumberPad.h"

#include "popups/EntryErrorBox.h"
#include "popups/EntryType.h"
#include "popups/PadDialog.h"
#include "touch/PopUpStyle.h"
#include "touch/PresentMark.h"
#include "wire/Message.h"

#include <array>

namespace {

constexpr int Columns = 4;
constexpr int HexadecimalColumns = 5;
constexpr int DisplayColumns = 2;
constexpr double PercentPerOne = 100.0;
constexpr int RepeatDelayMs = 500;
constexpr int RepeatIntervalMs = 200;
constexpr int StepDecimals = 1;

struct Step
{
    float megahertz;
    const char16_t* label;
};

constexpr std::array<Step, 4> Steps{{
    {0.1F, u"Step\r\n0.1 MHz"},
    {1.0F, u"Step\r\n1.0 MHz"},
    {10.0F, u"Step\r\n10.0 MHz"},
    {100.0F, u"Step\r\n100.0 MHz"},
}};

QString stepLabel(int index)
{
    return QString::fromUtf16(Steps.at(static_cast<std::size_t>(index)).label);
}

} // namespace

PopUpNumberPad::PopUpNumberPad(QObject* parent)
    : Key(parent)
{
}

PopUpNumberPad::~PopUpNumberPad()
{
    delete m_dialog;
}

double PopUpNumberPad::new_pop_NumberPad(const QString& title, const QString& ranges,
    double currentValue, int padType, const QString& specialValues, const QString& liveCommand,
    const QString& valueText, bool mirrored)
{
    if (m_dialog != nullptr) {
        return Cancelled; // it is open already
    }
    command = liveCommand;
    m_current = entryType::toSingle(currentValue);
    m_entryType = padType;
    m_specialValues = padType == entryType::Special && !specialValues.isEmpty()
        ? specialValues.split(QLatin1Char(' '))
        : QStringList();
    m_ranges = NumberRanges(ranges, padType);
    m_entry = NumberEntry(padType);
    m_stepIndex = 0;
    m_entered = Cancelled;

    // The arguments may belong to a key that is deleted while the dialog is open, so they are not
    // used after it.
    const QPointer<PopUpNumberPad> self(this);
    m_dialog = buildDialog(title, valueText, mirrored);
    const int outcome = m_dialog->exec();
    if (self == nullptr) {
        return Cancelled;
    }
    delete m_dialog;
    if (outcome != QDialog::Accepted) {
        m_entered = Cancelled;
        return Cancelled;
    }
    return m_entryType == entryType::Percentage ? m_entered / PercentPerOne : m_entered;
}

PadDialog* PopUpNumberPad::buildDialog(
    const QString& title, const QString& valueText, bool mirrored)
{
    const bool hexadecimal = m_entryType == entryType::Hexadecimal;
    const int columns = hexadecimal ? HexadecimalColumns : Columns;
    // On a frequency pad, "BackSpace" stands in the last cell of the first row.
    const int shown = m_entryType == entryType::Frequency ? columns - 1 : columns;
    m_dialog = new PadDialog(QStringLiteral("PopUpNumberPad"), title, Qt::FramelessWindowHint,
        columns, shown - DisplayColumns);
    m_dialog->setRangeText(m_ranges.rangeLine(title));
    m_dialog->setCurrentValueText(
        valueText.isEmpty() ? entryType::currentValueText(m_entryType, m_current) : valueText);
    showEntry(m_entry.display());

    m_dialog->keys->addDigits(mirrored ? PadKeys::Digits::Telephone : PadKeys::Digits::Calculator);
    addClearAndBackspace();
    addTypeKeys();
    addConfirmKeys();

    connect(m_dialog->keys, &PadKeys::character, this, &PopUpNumberPad::num_button_clicked);
    connect(this, &PopUpNumberPad::valid_entry, m_dialog, &QDialog::accept);
    connect(this, &PopUpNumberPad::reject_entry, m_dialog, &QDialog::reject);
    return m_dialog;
}

void PopUpNumberPad::addClearAndBackspace()
{
    struct Cell
    {
        int row;
        int column;
    };
    Cell clear{4, 2};
    Cell back{1, 3};
    if (m_entryType == entryType::Frequency) {
        back = {0, 3};
    } else if (m_entryType == entryType::Hexadecimal) {
        clear = {2, 4};
        back = {1, 4};
    }
    PadKeys* keys = m_dialog->keys;
    connect(
        keys->addKey(QStringLiteral("CE/Cancel"), popUpStyle::cancel(), clear.row, clear.column),
        &QPushButton::clicked, this, &PopUpNumberPad::clear_entry);
    connect(keys->addKey(
                QStringLiteral("BackSpace"), popUpStyle::lightSteelBlue(), back.row, back.column),
        &QPushButton::clicked, this, &PopUpNumberPad::backspace);
}

void PopUpNumberPad::addTypeKeys()
{
    PadKeys* keys = m_dialog->keys;
    if (m_entryType == entryType::Hexadecimal) {
        const QString letters = QStringLiteral("ABCDEF");
        keys->addHalfCharacters(letters.split(QString(), Qt::SkipEmptyParts), 1, 3);
        return;
    }
    keys->addCharacter(QStringLiteral("."), 4, 1);
    if (m_entryType == entryType::Signed) {
        connect(keys->addKey(QStringLiteral("+"), popUpStyle::lightSteelBlue(), 2, 3),
            &QPushButton::clicked, this, &PopUpNumberPad::plus_sign);
        connect(keys->addKey(QStringLiteral("-"), popUpStyle::seaGreen(), 3, 3),
            &QPushButton::clicked, this, &PopUpNumberPad::minus_sign);
    } else if (m_entryType == entryType::Frequency) {
        addStepKeys();
    } else if (!m_specialValues.isEmpty()) {
        QPushButton* special = keys->addKey(specialLabel(), popUpStyle::blue(), 2, 3);
        connect(special, &QPushButton::clicked, this, &PopUpNumberPad::special_key_ent);
        if (specialIsPresent()) {
            new PresentMark(special); // belongs to the key
        }
    }
}

void PopUpNumberPad::addStepKeys()
{
    PadKeys* keys = m_dialog->keys;
    m_stepKey = keys->addKey(stepLabel(m_stepIndex), popUpStyle::blue(), 1, 3);
    connect(m_stepKey, &QPushButton::clicked, this, &PopUpNumberPad::change_step);
    QPushButton* up = keys->addKey(QStringLiteral("Step Up"), popUpStyle::seaGreen(), 2, 3);
    QPushButton* down = keys->addKey(QStringLiteral("Step Down"), popUpStyle::seaGreen(), 3, 3);
    connect(up, &QPushButton::clicked, this, &PopUpNumberPad::up_rf);
    connect(down, &QPushButton::clicked, this, &PopUpNumberPad::down_rf);
    for (QPushButton* key : {up, down}) {
        key->setAutoRepeat(true);
        key->setAutoRepeatDelay(RepeatDelayMs);
        key->setAutoRepeatInterval(RepeatIntervalMs);
    }
}

void PopUpNumberPad::addConfirmKeys()
{
    QString text = QStringLiteral("Enter");
    int column = Columns - 1;
    switch (m_entryType) {
    case entryType::BitRate:
        addUnitKeys(QStringLiteral("Mbps"), QStringLiteral("Kbps"), QStringLiteral("bps"));
        return;
    case entryType::Hertz:
        addUnitKeys(QStringLiteral("MHz"), QStringLiteral("KHz"), QStringLiteral("Hz"));
        return;
    case entryType::Frequency:
    case entryType::Percentage:
        text = entryType::unit(m_entryType);
        break;
    case entryType::Hexadecimal:
        column = HexadecimalColumns - 1;
        break;
    default:
        break;
    }
    connect(m_dialog->keys->addKey(text, popUpStyle::green(), 4, column), &QPushButton::clicked,
        this, &PopUpNumberPad::check_number);
}

void PopUpNumberPad::addUnitKeys(const QString& mega, const QString& kilo, const QString& plain)
{
    PadKeys* keys = m_dialog->keys;
    connect(keys->addKey(mega, popUpStyle::green(), 4, 3), &QPushButton::clicked, this,
        &PopUpNumberPad::check_number_x6);
    connect(keys->addKey(kilo, popUpStyle::seaGreen(), 3, 3), &QPushButton::clicked, this,
        &PopUpNumberPad::check_number_x3);
    connect(keys->addKey(plain, popUpStyle::blue(), 2, 3), &QPushButton::clicked, this,
        &PopUpNumberPad::check_number);
}

// "-1 Auto Level" is labelled "Auto Level"; a list of numbers with the one that is sent.
QString PopUpNumberPad::specialLabel() const
{
    const QString text = m_specialValues.mid(1).join(QLatin1Char(' '));
    bool isNumber = false;
    m_specialValues.value(1).toDouble(&isNumber);
    return text.isEmpty() || isNumber ? m_specialValues.constFirst() : text;
}

bool PopUpNumberPad::specialIsPresent() const
{
    bool isNumber = false;
    const float special = m_specialValues.constFirst().toFloat(&isNumber);
    return isNumber && special == m_current && (valueGiven || m_current != 0.0F);
}

QString PopUpNumberPad::range_string(QPair<double, double> range, int padType)
{
    return NumberRanges::rangeString(range, padType);
}

void PopUpNumberPad::num_button_clicked(const QString& text)
{
    m_lastKey = text.toInt();
    m_entry.append(text);
    showEntry(m_entry.display());
}

void PopUpNumberPad::check_number()
{
    _check_number(NumberEntry::Plain);
}

void PopUpNumberPad::check_number_x3()
{
    _check_number(NumberEntry::Thousand);
}

void PopUpNumberPad::check_number_x6()
{
    _check_number(NumberEntry::Million);
}

void PopUpNumberPad::_check_number(int multiplier)
{
    const NumberEntry::Checked checked = m_entry.check(m_ranges, multiplier);
    if (checked.valid) {
        m_entered = checked.value;
        emit valid_entry();
        return;
    }
    const QPointer<PopUpNumberPad> self(this);
    entryErrorBox::showOutOfRange(m_dialog, m_entry.errorText(multiplier), m_ranges.errorText());
    if (self != nullptr) {
        showEntry(m_entry.clearAfterError());
    }
}

void PopUpNumberPad::up_rf()
{
    const float next = m_current + Steps.at(static_cast<std::size_t>(m_stepIndex)).megahertz;
    up_dwn_check_number(static_cast<double>(next));
}

void PopUpNumberPad::down_rf()
{
    const float next = m_current - Steps.at(static_cast<std::size_t>(m_stepIndex)).megahertz;
    up_dwn_check_number(static_cast<double>(next));
}

bool PopUpNumberPad::up_dwn_check_number(double next)
{
    // What is compared with the bounds is what is sent: single precision misses most of the bounds
    // that can be typed.
    const float stepped = entryType::toSingle(next);
    const QString sent = QString::number(static_cast<double>(stepped), 'f', StepDecimals);
    if (!m_ranges.contains(sent.toDouble())) {
        return false;
    }
    m_current = stepped;
    if (m_dialog != nullptr) {
        m_dialog->setCurrentValueText(entryType::currentValueText(entryType::Frequency, m_current));
    }
    emit response_message(message(sent));
    return true;
}

void PopUpNumberPad::change_step()
{
    m_stepIndex = (m_stepIndex + 1) % static_cast<int>(Steps.size());
    if (m_stepKey != nullptr) {
        m_stepKey->setText(stepLabel(m_stepIndex));
    }
}

void PopUpNumberPad::plus_sign()
{
    m_entry.plus();
    showEntry(m_entry.display());
}

void PopUpNumberPad::minus_sign()
{
    m_entry.minus();
    showEntry(m_entry.display());
}

void PopUpNumberPad::backspace()
{
    m_entry.backspace();
    showEntry(m_entry.display());
}

void PopUpNumberPad::clear_entry()
{
    if (m_entry.clear()) {
        showEntry(m_entry.display());
    } else {
        m_entered = Cancelled;
        emit reject_entry();
    }
}

void PopUpNumberPad::special_key_ent()
{
    if (!m_specialValues.isEmpty()) {
        m_entered = m_specialValues.constFirst().toDouble();
        emit valid_entry();
    }
}

void PopUpNumberPad::showEntry(const QString& text)
{
    if (m_dialog != nullptr) {
        m_dialog->setEntryText(text);
    }
}
