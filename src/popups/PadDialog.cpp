#include "popups/PadDialog.h"

#include "touch/PopUpStyle.h"

#include <QFontMetrics>
#include <QVBoxLayout>

namespace {

constexpr int Margin = 3;
constexpr int Spacing = 3;
constexpr int RangeMargin = 4;     // above and below the lines together
constexpr int MaxRangeHeight = 52; // three lines; leaves every row of keys its 70 pixels
constexpr int EntryColumns = 2;
constexpr int CurrentHeight = 70;
constexpr int CurrentWidth = 150;
constexpr int CurrentPixels = 18;
constexpr int RangeIndent = 4;
constexpr int RangePixels = 16;

QString rangeStyle()
{
    return QStringLiteral("QLabel{background:blue; color:white}");
}

FittedLabel* newLabel(const QString& name, const QString& sheet, QWidget* parent)
{
    auto* label = new FittedLabel(parent);
    label->setObjectName(name);
    label->setStyleSheet(sheet);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

// Sets the font size of labels whose sheet sets none.
void setPixels(QWidget* widget, int pixels)
{
    QFont font = widget->font();
    font.setPixelSize(pixels);
    widget->setFont(font);
}

} // namespace

PadDialog::PadDialog(const QString& name, const QString& title, Qt::WindowFlags flags, int columns,
    int currentColumns)
    : PopUpDialog(name, title, flags, Margin)
    , entryLabel(newLabel(QStringLiteral("entryLabel"), popUpStyle::entry(), this))
    , keys(new PadKeys(columns, this))
    , m_rangeLabel(newLabel(QStringLiteral("rangeLabel"), rangeStyle(), this))
    , m_currentValueLabel(
          newLabel(QStringLiteral("currentValueLabel"), popUpStyle::currentValue(), this))
{
    setFixedSize(Largest);
    m_rangeLabel->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_rangeLabel->setContentsMargins(RangeIndent, 0, RangeIndent, 0);
    setPixels(m_rangeLabel, RangePixels);
    m_rangeLabel->hide();
    m_currentValueLabel->setMinimumSize(CurrentWidth, CurrentHeight);
    setPixels(m_currentValueLabel, CurrentPixels);
    keys->addToTop(entryLabel, 0, EntryColumns);
    keys->addToTop(m_currentValueLabel, EntryColumns, currentColumns);

    column()->setSpacing(Spacing);
    column()->addWidget(m_rangeLabel);
    column()->addWidget(keys, 1);
}

void PadDialog::setRangeText(const QString& text)
{
    m_rangeLabel->setText(text);
    const qsizetype lines = 1 + text.count(QLatin1Char('\n'));
    const qsizetype wanted = lines * m_rangeLabel->fontMetrics().lineSpacing() + RangeMargin;
    m_rangeLabel->setFixedHeight(static_cast<int>(qMin<qsizetype>(wanted, MaxRangeHeight)));
    m_rangeLabel->show();
}

void PadDialog::setEntryText(const QString& text)
{
    entryLabel->setText(text);
}

void PadDialog::setCurrentValueText(const QString& text)
{
    m_currentValueLabel->setText(text);
}
