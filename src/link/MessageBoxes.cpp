#include "link/MessageBoxes.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QSpacerItem>
#include <QTextEdit>
#include <QWindow>
#include <qdrawutil.h>

namespace {

constexpr qsizetype MostOpen = 16;
constexpr qsizetype MostCharacters = 20'000;
constexpr int LeastWidth = 600; // of a box with a button
constexpr int OkHeight = 48;
constexpr int EdgeWidth = 2;
constexpr int ScreenMargin = 6;
constexpr int SmallestFont = 6; // the text itself is twice as high
constexpr int ScrolledFont = 8;

// With an edge all around: a box is as grey as the keys below it.
class EdgedBox : public QMessageBox
{
protected:
    void paintEvent(QPaintEvent* event) override
    {
        QMessageBox::paintEvent(event);
        QPainter painter(this);
        qDrawPlainRect(&painter, rect(), Qt::black, EdgeWidth);
    }
};

// A view of a text that is too long for the box's own label: it breaks lines anywhere if it must,
// and can be scrolled.
QTextEdit* longText(const QLabel& label)
{
    auto* view = new QTextEdit;
    view->setObjectName(QStringLiteral("longText"));
    view->setReadOnly(true);
    view->setTextInteractionFlags(Qt::NoTextInteraction);
    view->setFocusPolicy(Qt::NoFocus);
    view->setFrameShape(QFrame::NoFrame);
    view->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setHtml(label.text());
    // wide enough for a finger
    view->verticalScrollBar()->setStyleSheet(QStringLiteral("QScrollBar:vertical {width: 50px}"));
    return view;
}

bool fitsIn(QTextEdit& view, int pixels, QSize room)
{
    QFont font = view.font();
    font.setPixelSize(pixels);
    view.document()->setDefaultFont(font);
    view.document()->setTextWidth(room.width());
    return view.document()->size().height() <= room.height();
}

// Sets the text in the largest letters in which it fits the room; if there are none, in letters in
// which it is easily read while it is scrolled.
void setLetters(QTextEdit& view, int largest, QSize room)
{
    int pixels = largest;
    while (pixels >= SmallestFont && !fitsIn(view, pixels, room)) {
        --pixels;
    }
    if (pixels < SmallestFont) {
        fitsIn(view, ScrolledFont, room);
    }
    view.setFixedSize(room.width(), qMin(room.height(), qCeil(view.document()->size().height())));
}

// Out: whether the box, as it lays itself out, fits the room: it breaks its text at half the width
// of the screen or its least width.
bool fitsByItself(const QMessageBox& box, QGridLayout& grid, QSize room)
{
    const int least = box.buttons().isEmpty() ? room.width() / 2 : LeastWidth;
    const int width = qMax(least, grid.totalMinimumSize().width());
    return width <= room.width() && grid.totalHeightForWidth(width) <= room.height();
}

// Out: what is left for the text beside the picture and above the button.
QSize roomForText(const QMessageBox& box, const QGridLayout& grid, QSize room)
{
    const auto* icon = box.findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label"));
    const auto* buttons = box.findChild<QDialogButtonBox*>();
    const int gap = grid.verticalSpacing();
    const QMargins margins = grid.contentsMargins();
    const int beside = icon != nullptr ? icon->sizeHint().width() + 5 * gap : 0;
    const int below = box.buttons().isEmpty() ? 0 : buttons->sizeHint().height() + 2 * gap;
    return room.shrunkBy(margins) - QSize(beside, below);
}

void fit(QMessageBox& box, QSize room)
{
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (grid == nullptr || label == nullptr) {
        return;
    }
    box.ensurePolished();
    label->ensurePolished();
    if (fitsByItself(box, *grid, room)) {
        return;
    }
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(grid->indexOf(label), &row, &column, &rows, &columns);
    label->hide();
    QTextEdit* view = longText(*label);
    grid->addWidget(view, row, column, rows, columns);
    setLetters(*view, label->fontInfo().pixelSize(), roomForText(box, *grid, room));
}

// A modal editor that is open would keep the operator from closing a box that lies over it.
void standOverEditor(QMessageBox& box)
{
    if (const QWidget* editor = QApplication::activeModalWidget()) {
        box.winId(); // makes the window
        box.windowHandle()->setTransientParent(editor->window()->windowHandle());
    }
}

} // namespace

MessageBoxes::~MessageBoxes()
{
    for (const QPointer<QMessageBox>& box : std::as_const(m_boxes)) {
        delete box;
    }
}

QMessageBox* MessageBoxes::open(const QString& text, bool okButton, const QRect& area)
{
    makeRoom();
    auto* box = new EdgedBox;
    box->setObjectName(QStringLiteral("messageBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->setWindowFlag(Qt::FramelessWindowHint);
    const QString shown =
        text.size() > MostCharacters ? text.left(MostCharacters) + QChar(0x2026) : text;
    box->setText(QStringLiteral("<font size = 6>%1</font>").arg(shown));
    box->setIcon(QMessageBox::Information);
    box->setStandardButtons(QMessageBox::NoButton); // otherwise one is added when it is shown
    box->setStyleSheet(QStringLiteral("background-color:darkgray; border-width: 2px;"));
    if (okButton) {
        QPushButton* ok = box->addButton(QMessageBox::Ok);
        ok->setStyleSheet(QStringLiteral("font: 28px"));
        ok->setMinimumHeight(OkHeight);
    }
    // last of all: the box builds its layout anew whenever its parts change
    if (auto* grid = qobject_cast<QGridLayout*>(box->layout()); grid != nullptr && okButton) {
        grid->addItem(new QSpacerItem(LeastWidth, 0, QSizePolicy::Minimum, QSizePolicy::Expanding),
            grid->rowCount(), 0, 1, grid->columnCount());
    }
    fit(*box, area.size() - QSize(2 * ScreenMargin, 2 * ScreenMargin));
    m_boxes += box;
    standOverEditor(*box);
    box->show();
    QRect place = box->frameGeometry();
    place.moveCenter(area.center());
    box->move(place.topLeft());
    return box;
}

void MessageBoxes::makeRoom()
{
    m_boxes.removeAll(nullptr);
    while (m_boxes.size() >= MostOpen) {
        delete m_boxes.takeFirst();
    }
}
