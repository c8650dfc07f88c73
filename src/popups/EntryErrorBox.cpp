#include "popups/EntryErrorBox.h"

#include "popups/PopUpDialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpacerItem>
#include <qdrawutil.h>

namespace {

constexpr int RangeSpacer = 600;
constexpr int AddressBoxWidth = 300;
constexpr int AddressPixels = 18;
constexpr QSize LeastButton(110, 50);
constexpr int EdgeWidth = 2;
constexpr int WidestText = 700;
constexpr int HighestText = 310; // leaves room for the first line and the button

} // namespace

EntryErrorBox::EntryErrorBox(QWidget* parent)
    : QMessageBox(parent)
{
    setWindowIcon(QIcon(QStringLiteral(":/MyFiles/TORVA-globe.png")));
    addButton(QMessageBox::Ok)->setMinimumSize(LeastButton);
}

void EntryErrorBox::showOutOfRange(
    QWidget* parent, const QString& invalidText, const QString& ranges)
{
    const QPointer<EntryErrorBox> box(new EntryErrorBox(parent));
    const QString lines = QString(ranges).replace(QStringLiteral("\r\n"), QStringLiteral("<br>"));
    box->setWindowTitle(QStringLiteral("Out Of Range"));
    box->setText(invalidText);
    box->setInformativeText(
        QStringLiteral("<font size = 6>Valid Range(s)</font><br><font size = 7><b>%1</b></font>")
            .arg(lines));
    box->button(QMessageBox::Ok)->setStyleSheet(QStringLiteral("font: 28px"));
    box->addSpacer(RangeSpacer);
    box->keepTextInside();
    box->exec();
    delete box;
}

void EntryErrorBox::showAddressFormat(QWidget* parent)
{
    const QPointer<EntryErrorBox> box(new EntryErrorBox(parent));
    box->setWindowTitle(QStringLiteral("IPv4 Format"));
    QFont font = box->font();
    font.setPixelSize(AddressPixels);
    box->setFont(font);
    box->button(QMessageBox::Ok)->setFont(font);
    box->setText(QStringLiteral("Invalid Entry"));
    box->setInformativeText(QStringLiteral("Expected Format #.#.#.# \n[# is from 0 to 255]"));
    const QMargins margins = box->layout()->contentsMargins();
    box->addSpacer(AddressBoxWidth - margins.left() - margins.right());
    box->exec();
    delete box;
}

void EntryErrorBox::showEvent(QShowEvent* event)
{
    QMessageBox::showEvent(event);
    PopUpDialog::centre(this);
}

// An edge all around: the box is as grey as the pad's keys below it.
void EntryErrorBox::paintEvent(QPaintEvent* event)
{
    QMessageBox::paintEvent(event);
    QPainter painter(this);
    qDrawPlainRect(&painter, rect(), Qt::black, EdgeWidth);
}

void EntryErrorBox::addSpacer(int width)
{
    // the box sets its size by its layout when it is shown: only what is in the layout counts
    auto* grid = qobject_cast<QGridLayout*>(layout());
    if (grid != nullptr) {
        grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Expanding),
            grid->rowCount(), 0, 1, grid->columnCount());
    }
}

void EntryErrorBox::keepTextInside()
{
    auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
    if (label == nullptr) {
        return;
    }
    label->setMaximumWidth(WidestText);
    if (label->sizeHint().height() <= HighestText) {
        return;
    }
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFixedHeight(HighestText);
    delete layout()->replaceWidget(label, scroll);
    scroll->setWidgetResizable(true);
    scroll->setWidget(label);
    // wide enough for a finger
    scroll->verticalScrollBar()->setStyleSheet(QStringLiteral("QScrollBar:vertical {width: 50px}"));
}
