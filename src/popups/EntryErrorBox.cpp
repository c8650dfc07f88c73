#include "popups/EntryErrorBox.h"

#include "touch/MessageBox.h"
#include "touch/Picture.h"

#include <QLayout>
#include <QPointer>
#include <QPushButton>

namespace {

constexpr int RangeBoxWidth = 600; // inside its margins
constexpr int AddressBoxWidth = 300;
constexpr int AddressPixels = 18;

MessageBox* newBox(QWidget* parent, const QString& title)
{
    auto* box = new MessageBox(parent);
    box->setWindowIcon(touch::picture(QStringLiteral(":/MyFiles/TORVA-globe.png")));
    box->setWindowTitle(title);
    return box;
}

} // namespace

void entryErrorBox::showOutOfRange(
    QWidget* parent, const QString& invalidText, const QString& ranges)
{
    const QPointer<MessageBox> box(newBox(parent, QStringLiteral("Out Of Range")));
    const QString lines = QString(ranges).replace(QStringLiteral("\r\n"), QStringLiteral("<br>"));
    box->addOk()->setStyleSheet(QStringLiteral("font: 28px"));
    box->setText(invalidText);
    box->setInformativeText(
        QStringLiteral("<font size = 6>Valid Range(s)</font><br><font size = 7><b>%1</b></font>")
            .arg(lines));
    box->setMinContentWidth(RangeBoxWidth);
    box->exec();
    delete box;
}

void entryErrorBox::showAddressFormat(QWidget* parent)
{
    const QPointer<MessageBox> box(newBox(parent, QStringLiteral("IPv4 Format")));
    QFont font = box->font();
    font.setPixelSize(AddressPixels);
    box->setFont(font);
    box->addOk()->setFont(font);
    box->setText(QStringLiteral("Invalid Entry"));
    box->setInformativeText(QStringLiteral("Expected Format #.#.#.# \n[# is from 0 to 255]"));
    const QMargins margins = box->layout()->contentsMargins();
    box->setMinContentWidth(AddressBoxWidth - margins.left() - margins.right());
    box->exec();
    delete box;
}
