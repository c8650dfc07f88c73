#include "popups/PadKeys.h"

#include "touch/PopUpStyle.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

#include <QGridLayout>

namespace {

constexpr int Rows = 5;
constexpr int RowHeight = 70;
constexpr int ColumnWidth = 150;
constexpr int Spacing = 3;
constexpr int KeyPixels = 26;
constexpr int DigitRow = 3; // the lowest row of "1" to "9"
constexpr int DigitsPerRow = 3;
constexpr int NineDigits = 9;
constexpr int ZeroRow = 4;
constexpr int HalvesPerColumn = 2;

} // namespace

PadKeys::PadKeys(int columns, QWidget* parent)
    : QWidget(parent)
    , m_grid(new QGridLayout(this))
{
    // With a border of its own a key shows the plain colour of its sheet. The platform's border
    // comes with a gradient, on which white text is hard to read.
    setStyleSheet(QStringLiteral("QPushButton {border: 1px solid #505050; border-radius: 4px}"));
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(Spacing);
    for (int row = 0; row < Rows; ++row) {
        m_grid->setRowMinimumHeight(row, RowHeight);
        m_grid->setRowStretch(row, 1);
    }
    for (int column = 0; column < columns; ++column) {
        m_grid->setColumnMinimumWidth(column, ColumnWidth);
        m_grid->setColumnStretch(column, 1);
    }
}

void PadKeys::addToTop(QWidget* widget, int column, int columns)
{
    m_grid->addWidget(widget, 0, column, 1, columns);
}

QPushButton* PadKeys::addKey(const QString& text, const QString& sheet, int row, int column)
{
    QPushButton* key = newKey(text, sheet);
    m_grid->addWidget(key, row, column);
    return key;
}

QPushButton* PadKeys::addCharacter(const QString& text, int row, int column)
{
    QPushButton* key = newCharacter(text);
    m_grid->addWidget(key, row, column);
    return key;
}

void PadKeys::addDigits(Digits order)
{
    const bool telephone = order == Digits::Telephone;
    for (int i = 0; i < NineDigits; ++i) {
        const int fromLeft = i % DigitsPerRow;
        const int digit = telephone ? NineDigits - i : i + 1;
        const int column = telephone ? DigitsPerRow - 1 - fromLeft : fromLeft;
        addCharacter(QString::number(digit), DigitRow - i / DigitsPerRow, column);
    }
    addCharacter(QStringLiteral("0"), ZeroRow, 0);
}

void PadKeys::addHalfCharacters(const QStringList& texts, int row, int column)
{
    const int count = static_cast<int>(texts.size());
    const int rows = (count + HalvesPerColumn - 1) / HalvesPerColumn;
    auto* block = new QGridLayout;
    block->setSpacing(Spacing);
    m_grid->addLayout(block, row, column, rows, 1);
    for (int i = 0; i < count; ++i) {
        block->addWidget(newCharacter(texts.at(i)), i / HalvesPerColumn, i % HalvesPerColumn);
    }
}

QPushButton* PadKeys::newKey(const QString& text, const QString& sheet)
{
    QPushButton* key = new TextButton(text, this, TextButton::Shrinking);
    // for sheets that name no font size
    QFont large = key->font();
    large.setPixelSize(KeyPixels);
    key->setFont(large);
    key->setStyleSheet(sheet);
    key->setMaximumHeight(touch::MaxKeyHeight);
    // The cell decides on the size, not the text.
    key->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    key->setFocusPolicy(Qt::NoFocus);
    key->setAutoDefault(false);
    m_keys.append(key);
    return key;
}

QPushButton* PadKeys::newCharacter(const QString& text)
{
    QPushButton* key = newKey(text, popUpStyle::character());
    connect(key, &QPushButton::clicked, this, [this, text] { emit character(text); });
    return key;
}
