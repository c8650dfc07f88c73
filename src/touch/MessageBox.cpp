#include "touch/MessageBox.h"

#include "touch/Edge.h"
#include "touch/Placement.h"
#include "touch/PopUpStyle.h"
#include "touch/Sizes.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpacerItem>
#include <QTextEdit>
#include <QtMath>

namespace {

constexpr int EdgeWidth = 2;
constexpr int TitleHeight = 36;
constexpr int ScreenMargin = 6; // between the box and the edge of the panel
// The smallest letters of a long text, and those of a text that fits in no size and is scrolled.
// The main unit's messages, which are the rich texts, are wrapped in markup that doubles the font's
// size.
struct Letters
{
    int minPixels;
    int scrolledPixels;
};
constexpr Letters PlainLetters{14, 14};
constexpr Letters RichLetters{6, 8};
constexpr qsizetype MaxMeasuredChars = 20'100;
constexpr QSize MaxInformative(700, 310); // leaves room for the first line and the button

// Left of the text QMessageBox lays out the picture and some spacings, or an indent alone.
constexpr int PictureGaps = 5;
constexpr int Indent = 15;
constexpr int IndentGaps = 2;

// A view of a text that is too long for the box's own label: it breaks lines anywhere if it must,
// and can be scrolled.
QTextEdit* newLongText(const QString& text, Qt::TextFormat format)
{
    auto* view = new QTextEdit;
    view->setObjectName(QStringLiteral("longText"));
    view->setReadOnly(true);
    view->setTextInteractionFlags(Qt::NoTextInteraction);
    view->setFocusPolicy(Qt::NoFocus);
    view->setFrameShape(QFrame::NoFrame);
    view->viewport()->setAutoFillBackground(false); // the text stands on the box's own colour
    view->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->verticalScrollBar()->setStyleSheet(touch::scrollBarSheet());
    if (format == Qt::PlainText) {
        view->setPlainText(text.left(MaxMeasuredChars));
    } else {
        view->setHtml(text);
    }
    return view;
}

bool fitsIn(QTextEdit* view, int pixels, const QSize& room)
{
    QFont font = view->font();
    font.setPixelSize(pixels);
    view->document()->setDefaultFont(font);
    view->document()->setTextWidth(room.width());
    return view->document()->size().height() <= room.height();
}

// Sets the text in the largest letters in which it fits the room; if there are none, in letters in
// which it is easily read while it is scrolled.
void setLetters(QTextEdit* view, int maxPixels, const Letters& letters, const QSize& room)
{
    int pixels = qMax(maxPixels, letters.minPixels);
    while (pixels >= letters.minPixels && !fitsIn(view, pixels, room)) {
        --pixels;
    }
    if (pixels < letters.minPixels) {
        fitsIn(view, letters.scrolledPixels, room);
    }
    view->setFixedSize(room.width(), qMin(room.height(), qCeil(view->document()->size().height())));
}

} // namespace

MessageBox::MessageBox(QWidget* parent)
    : QMessageBox(parent)
{
    setStandardButtons(QMessageBox::NoButton); // otherwise one is added when the box is shown
}

QPushButton* MessageBox::addOk(const QSize& minSize)
{
    QPushButton* ok = addButton(QMessageBox::Ok);
    ok->setMinimumSize(minSize);
    return ok;
}

void MessageBox::setNonBlocking(const QString& rules)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    setWindowFlag(Qt::FramelessWindowHint);
    setStyleSheet(QStringLiteral("background-color:darkgray; ") + rules);
}

void MessageBox::setMinContentWidth(int width)
{
    m_minContentWidth = width;
}

void MessageBox::setArea(const QRect& area)
{
    m_area = area;
}

void MessageBox::setTextShownAs(const QString& text, const QString& shown)
{
    setTextFormat(Qt::PlainText); // the label, which is hidden, must not look for tags
    setText(text);
    m_shown = shown;
}

void MessageBox::report(const QString& text)
{
    MessageBox box;
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.addOk();
    box.exec();
}

// Before the show event, which comes when the children are shown already: what is added to a layout
// that late is not shown.
void MessageBox::setVisible(bool visible)
{
    if (visible && !m_laidOut) {
        m_laidOut = true;
        layOut();
    }
    QMessageBox::setVisible(visible);
}

void MessageBox::showEvent(QShowEvent* event)
{
    QMessageBox::showEvent(event); // sizes the box by its layout
    if (m_area.isValid()) {
        QRect place = frameGeometry();
        place.moveCenter(m_area.center());
        move(place.topLeft());
    } else {
        touch::centreOnPanel(this);
    }
}

void MessageBox::paintEvent(QPaintEvent* event)
{
    QMessageBox::paintEvent(event);
    touch::paintEdge(this);
}

void MessageBox::resizeEvent(QResizeEvent* event)
{
    QMessageBox::resizeEvent(event);
    if (m_title != nullptr) {
        m_title->setGeometry(EdgeWidth, EdgeWidth, width() - 2 * EdgeWidth, TitleHeight);
    }
}

// QMessageBox builds its layout anew whenever one of its parts changes, so everything that is added
// to the layout is added last. Its labels are reached by the names that Qt gives them.
void MessageBox::layOut()
{
    auto* grid = qobject_cast<QGridLayout*>(layout());
    auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (grid == nullptr || label == nullptr) {
        return;
    }
    if (!windowTitle().isEmpty()) {
        addTitle();
    }
    if (m_minContentWidth > 0) {
        grid->addItem(
            new QSpacerItem(m_minContentWidth, 0, QSizePolicy::Minimum, QSizePolicy::Expanding),
            grid->rowCount(), 0, 1, grid->columnCount());
    }
    if (informativeText().isEmpty()) {
        const QRect area = m_area.isValid() ? m_area : touch::panelArea(this);
        fitText(grid, label, area.size() - QSize(2 * ScreenMargin, 2 * ScreenMargin));
    } else {
        limitInformativeText();
    }
}

// Above the layout, in a wider margin: QMessageBox expects its own parts in the first rows.
void MessageBox::addTitle()
{
    m_title = new QLabel(windowTitle(), this);
    m_title->setObjectName(QStringLiteral("titleLabel"));
    m_title->setTextFormat(Qt::PlainText);
    m_title->setStyleSheet(popUpStyle::title());
    m_title->setAlignment(Qt::AlignCenter);
    layout()->setContentsMargins(layout()->contentsMargins() + QMargins(0, TitleHeight, 0, 0));
}

void MessageBox::fitText(QGridLayout* grid, QLabel* label, const QSize& room)
{
    ensurePolished();
    label->ensurePolished();
    const bool asItIs = m_shown.isEmpty();
    if (asItIs && text().size() <= MaxMeasuredChars && fitsByItself(*grid, room)) {
        return;
    }
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(grid->indexOf(label), &row, &column, &rows, &columns);
    label->hide();
    const Qt::TextFormat format = asItIs ? textFormat() : Qt::RichText;
    QTextEdit* view = newLongText(asItIs ? text() : m_shown, format);
    grid->addWidget(view, row, column, rows, columns);
    const Letters& letters = format == Qt::PlainText ? PlainLetters : RichLetters;
    setLetters(view, label->fontInfo().pixelSize(), letters, roomForText(*grid, room));
}

// Whether the box fits the room as it lays itself out: it breaks its text at half the width of the
// screen or, where that is more, at its least width.
bool MessageBox::fitsByItself(const QGridLayout& grid, const QSize& room) const
{
    const int minWidth = m_minContentWidth > 0 ? m_minContentWidth : room.width() / 2;
    const int width = qMax(minWidth, grid.totalMinimumSize().width());
    return width <= room.width() && grid.totalHeightForWidth(width) <= room.height();
}

// What is left for the text beside the picture and above the button.
QSize MessageBox::roomForText(const QGridLayout& grid, const QSize& room) const
{
    const auto* picture = findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label"));
    const auto* buttonRow = findChild<QDialogButtonBox*>();
    const int gap = grid.verticalSpacing();
    const bool hasPicture = picture != nullptr && icon() != QMessageBox::NoIcon;
    const int beside =
        hasPicture ? picture->sizeHint().width() + PictureGaps * gap : Indent + IndentGaps * gap;
    const int below = buttons().isEmpty() ? 0 : buttonRow->sizeHint().height() + 2 * gap;
    return room.shrunkBy(grid.contentsMargins()) - QSize(beside, below);
}

void MessageBox::limitInformativeText()
{
    auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
    if (label == nullptr) {
        return;
    }
    label->setMaximumWidth(MaxInformative.width());
    if (label->sizeHint().height() <= MaxInformative.height()) {
        return;
    }
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFixedHeight(MaxInformative.height());
    delete layout()->replaceWidget(label, scroll);
    scroll->setWidgetResizable(true);
    scroll->setWidget(label);
    scroll->verticalScrollBar()->setStyleSheet(touch::scrollBarSheet());
}
