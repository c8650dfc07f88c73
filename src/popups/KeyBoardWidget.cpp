#include "popups/KeyBoardWidget.h"

#include "popups/EditedLine.h"
#include "popups/PushButtonKey.h"

#include <QHBoxLayout>

namespace {

constexpr int Margin = 8;
constexpr int Spacing = 4;
// Shares of a row's width. All rows have the same sum, so that all letters are equally wide.
constexpr int RowShares = 28;
constexpr int LetterShares = 2;
constexpr int WideShares = 5;
constexpr int ArrowShares = 3;
constexpr int MinWidth = 770;

// White texts need a dark face, whatever the keyboard stands on.
QString faceStyle()
{
    return QStringLiteral(
        "PushButtonKey {background-color: #303438; color: white; font-size: 20px;}");
}

int sharesOf(const QString& text)
{
    if (text == QStringLiteral("BACKSPACE") || text == QStringLiteral("RETURN") ||
        text == QStringLiteral("CAPS")) {
        return WideShares;
    }
    return text.size() > 1 ? ArrowShares : LetterShares;
}

QStringList split(const QString& keys)
{
    return keys.split(QLatin1Char(' '));
}

} // namespace

KeyBoardWidget::KeyBoardWidget(QLineEdit* field, bool embedded, QWidget* parent)
    : QWidget(parent)
    , m_field(field)
{
    setStyleSheet(faceStyle());
    setMinimumWidth(MinWidth);
    auto* rows = new QVBoxLayout(this);
    const int margin = embedded ? 0 : Margin;
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(Spacing);
    for (const QString& keys : {QStringLiteral("1 2 3 4 5 6 7 8 9 0 BACKSPACE DEL"),
             QStringLiteral("Q W E R T Y U I O P"), QStringLiteral("CAPS A S D F G H J K L - _"),
             QStringLiteral("RETURN <<- ->> Z X C V B N M .")}) {
        auto* row = new QHBoxLayout;
        row->setSpacing(Spacing);
        rows->addLayout(row);
        addRow(row, split(keys));
    }
    // The caps lock is off at the start.
    emit capsPushed(false);
}

void KeyBoardWidget::addRow(QHBoxLayout* row, const QStringList& texts)
{
    int taken = 0;
    for (const QString& text : texts) {
        taken += sharesOf(text);
    }
    const int spare = RowShares - taken;
    // A row without a command key stands in the middle; the others begin at the left edge.
    const bool centred = texts.first().size() == 1 && spare > 1;
    if (centred) {
        row->addStretch(spare / 2);
    }
    for (const QString& text : texts) {
        row->addWidget(newKey(text), sharesOf(text));
    }
    if (spare > 0) {
        row->addStretch(centred ? spare - spare / 2 : spare);
    }
}

QLineEdit* KeyBoardWidget::textEdit() const
{
    return m_field;
}

void KeyBoardWidget::setTextEdit(QLineEdit& field)
{
    m_field = &field;
}

PushButtonKey* KeyBoardWidget::newKey(const QString& text)
{
    auto* key = new PushButtonKey(text, this);
    connect(key, &PushButtonKey::keyPressed, this, &KeyBoardWidget::pushButtonKeyPressed);
    connect(key, &PushButtonKey::capLocksChanged, this, &KeyBoardWidget::capsPushed);
    connect(this, &KeyBoardWidget::capsPushed, key, &PushButtonKey::getCapLocksChanged);
    return key;
}

void KeyBoardWidget::pushButtonKeyPressed(const QString& text)
{
    if (m_field == nullptr) {
        return;
    }
    if (EditedLine::isReturn(text)) {
        const QPointer<QLineEdit> field = m_field;
        emit ret_pushed();
        if (field != nullptr) {
            field->setFocus();
        }
        return;
    }
    const EditedLine before{m_field->text(), m_field->cursorPosition(), false};
    const EditedLine line = before.after(text, m_field->maxLength());
    if (line.text != before.text) {
        m_field->setText(line.text);
    }
    if (m_field == nullptr) {
        return; // whoever is connected to textChanged() may delete the field
    }
    if (line.insertedSelected) {
        m_field->setSelection(line.cursor - 1, 1);
    } else {
        m_field->deselect();
        m_field->setCursorPosition(line.cursor);
    }
    m_field->setFocus();
}
