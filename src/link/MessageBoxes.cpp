#include "link/MessageBoxes.h"

#include "touch/MessageBox.h"

#include <QApplication>
#include <QPushButton>
#include <QWindow>

namespace {

constexpr qsizetype MaxOpen = 16;
constexpr qsizetype MaxCharacters = 20'000;
constexpr int MinContentWidth = 600; // of a box with a button
constexpr QSize MinOk(0, 48);        // its large letters make it wide

// Without this, a modal editor that is open would keep the operator from closing a box over it.
void standOverEditor(QMessageBox* box)
{
    if (const QWidget* editor = QApplication::activeModalWidget()) {
        box->winId(); // creates the native window
        box->windowHandle()->setTransientParent(editor->window()->windowHandle());
    }
}

} // namespace

MessageBoxes::MessageBoxes(QObject* parent)
    : QObject(parent)
{
}

MessageBoxes::~MessageBoxes()
{
    for (const QPointer<QMessageBox>& box : std::as_const(m_boxes)) {
        delete box;
    }
}

QMessageBox* MessageBoxes::open(const QString& text, bool okButton, const QRect& area)
{
    makeRoom();
    auto* box = new MessageBox;
    box->setObjectName(QStringLiteral("messageBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->setWindowFlag(Qt::FramelessWindowHint);
    const QString shown =
        text.size() > MaxCharacters ? text.left(MaxCharacters) + QChar(0x2026) : text;
    box->setText(QStringLiteral("<font size = 6>%1</font>").arg(shown));
    box->setIcon(QMessageBox::Information);
    box->setStyleSheet(QStringLiteral("background-color:darkgray; border-width: 2px;"));
    if (okButton) {
        box->addOk(MinOk)->setStyleSheet(QStringLiteral("font: 28px"));
        box->setMinContentWidth(MinContentWidth);
    }
    box->setArea(area);
    m_boxes += box;
    standOverEditor(box);
    box->show();
    return box;
}

void MessageBoxes::makeRoom()
{
    m_boxes.removeAll(nullptr);
    while (m_boxes.size() >= MaxOpen) {
        delete m_boxes.takeFirst();
    }
}
