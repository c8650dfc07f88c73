#include "popups/PopUpSlider.h"

#include "popups/PopUpDialog.h"
#include "popups/TouchSlider.h"
#include "touch/PopUpStyle.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

#include <QLabel>
#include <QMetaMethod>
#include <QVBoxLayout>

namespace {

constexpr int Margin = 9;
constexpr int ReadoutHeight = 40;
constexpr int SliderHeight = 100;
constexpr int Width = 400;
constexpr int WidthOfManySteps = 630;
constexpr int FirstRepeatMs = 500;
constexpr int NextRepeatMs = 200;
constexpr int MaxInRow = 9;
constexpr int ButtonWidth = 80;
constexpr int ButtonHeight = 60;
constexpr int ButtonFont = 22;

QString sliderStyle()
{
    return QStringLiteral(
        "QSlider::groove:horizontal { border: 10px solid #00008B; height: 8px; background: #4682b4; margin: 2px 0;}                         QSlider::handle:horizontal { background: #919191; border: 6px black; width: 50px; margin: -24px 0; border-radius: 25px;}                         QSlider::add-page:horizontal { background: #4682B4;}                         QSlider::sub-page:horizontal { background: #00008B;} ");
}

QString downStyle()
{
    return QStringLiteral(
        "QPushButton {background-color:blue; color:white;} QPushButton:pressed {background-color: #4169e1;}");
}

QString upStyle()
{
    return QStringLiteral(
        "QPushButton {background-color:orange; color:white;} QPushButton:pressed {background-color: #4169e1;}");
}

// With a border the buttons show the plain colours of their own sheets, without a gradient.
QString rowStyle()
{
    return QStringLiteral("QPushButton {border: 2px solid black; border-radius: 4px;}");
}

// In its row from the start: a button that moves there works its sheet out again.
QPushButton* newSliderButton(
    QWidget* row, const QString& text, const QString& sheet, TextButton::Looks looks)
{
    QPushButton* button = new TextButton(text, row, looks);
    button->setStyleSheet(sheet);
    QFont font = button->font();
    font.setPixelSize(ButtonFont);
    button->setFont(font);
    return button;
}

// The sheet sets white text; a rim makes it readable on a light face.
QPushButton* newStepButton(
    QWidget* row, const QString& text, const QString& sheet, TextButton::Looks rim = {})
{
    QPushButton* button = newSliderButton(row, text, sheet, rim | TextButton::OneLine);
    button->setAutoRepeat(true);
    button->setAutoRepeatDelay(FirstRepeatMs);
    button->setAutoRepeatInterval(NextRepeatMs);
    return button;
}

// Lays the buttons out from left to right, on as few rows as hold them.
void fillRows(QGridLayout& layout, const QList<QPushButton*>& buttons)
{
    const auto count = static_cast<int>(buttons.size());
    const int rows = (count + MaxInRow - 1) / MaxInRow;
    const int columns = (count + rows - 1) / rows;
    for (int i = 0; i < count; ++i) {
        buttons.at(i)->setMinimumSize(ButtonWidth, rows > 1 ? touch::MinTarget : ButtonHeight);
        layout.addWidget(buttons.at(i), i / columns, i % columns);
        layout.setColumnStretch(i % columns, 1);
    }
}

} // namespace

PopUpSlider::PopUpSlider(QObject* parent)
    : Key(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(ThrottleMs);
    // A coarse timer may fire early, and two messages would then follow too soon.
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &PopUpSlider::timerDone);
}

void PopUpSlider::new_pop_slider(const QString& name, const QString& messageCommand,
    const QString& range, float currentValue, int readoutType, const QString& steps)
{
    m_deleteWhenSent = false;
    command = messageCommand;
    label = name;
    m_value = SliderValue(name, messageCommand, range, readoutType);
    const QList<int> stepList = SliderValue::steps(steps);

    PopUpDialog dialog(QStringLiteral("PopUpSlider"),
        QStringLiteral("Set ") + name + QStringLiteral(" Value"), Qt::WindowFlags(), Margin);
    dialog.setMinimumWidth(stepList.size() > 1 ? WidthOfManySteps : Width);

    auto* readout = new QLabel(m_value.readout(static_cast<double>(currentValue)), &dialog);
    readout->setObjectName(QStringLiteral("readoutLabel"));
    readout->setTextFormat(Qt::PlainText);
    readout->setAlignment(Qt::AlignCenter);
    readout->setMinimumHeight(ReadoutHeight);
    readout->setStyleSheet(QStringLiteral("font: 22px"));
    auto* slider = new TouchSlider(&dialog);
    slider->setRange(m_value.minimum(), m_value.maximum());
    slider->setValue(m_value.position(static_cast<double>(currentValue)));
    slider->setMinimumHeight(SliderHeight);
    slider->setStyleSheet(sliderStyle());
    m_readout = readout;
    m_slider = slider;
    connect(slider, &QSlider::valueChanged, this, &PopUpSlider::send_message);

    dialog.column()->addWidget(readout);
    dialog.column()->addWidget(slider);
    dialog.column()->addWidget(newButtonRow(dialog, stepList));

    const QPointer<PopUpSlider> self(this);
    const int result = dialog.exec();
    if (self != nullptr) {
        m_result = result;
    }
}

QWidget* PopUpSlider::newButtonRow(QDialog& dialog, const QList<int>& steps)
{
    auto* row = new QWidget(&dialog);
    row->setStyleSheet(rowStyle());
    QList<QPushButton*> buttons;
    const auto add = [this, &buttons](int step, QPushButton* stepButton) {
        connect(stepButton, &QPushButton::clicked, this, [this, step] { change_slide(step); });
        buttons += stepButton;
    };
    const auto addDown = [row, &add](int step, const QString& text) {
        add(-step, newStepButton(row, text, downStyle()));
    };
    const auto addUp = [row, &add](int step, const QString& text) {
        add(step, newStepButton(row, text, upStyle(), TextButton::Rimmed));
    };
    if (steps.isEmpty()) {
        addDown(1, QStringLiteral("DOWN"));
    }
    for (auto step = steps.crbegin(); step != steps.crend(); ++step) {
        addDown(*step, QStringLiteral("< -%1").arg(*step));
    }
    auto* ok =
        newSliderButton(row, QStringLiteral("OK"), popUpStyle::plainGreen(), TextButton::OneLine);
    // Quirk: "OK" closes by rejecting. See "Quirks" in docs/architecture.md.
    connect(ok, &QPushButton::clicked, &dialog, &QDialog::reject);
    buttons += ok;
    for (const int step : steps) {
        addUp(step, QStringLiteral("+%1 >").arg(step));
    }
    if (steps.isEmpty()) {
        addUp(1, QStringLiteral("UP"));
    }
    auto* layout = new QGridLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    fillRows(*layout, buttons);
    return row;
}

// Quirk: the last position is sent up to ThrottleMs later, when the slider is closed already. See
// "Quirks" in docs/architecture.md.
void PopUpSlider::deleteWhenSent()
{
    m_deleteWhenSent = true;
    if (!m_throttle.isWaiting()) {
        deleteLater();
    }
}

bool PopUpSlider::isFinishing() const
{
    return m_deleteWhenSent && m_throttle.isWaiting() &&
        isSignalConnected(QMetaMethod::fromSignal(&Key::response_message));
}

void PopUpSlider::send_message()
{
    if (m_slider == nullptr) {
        return;
    }
    const int position = m_slider->value();
    if (m_readout != nullptr) {
        m_readout->setText(m_value.readout(position));
    }
    if (const auto message = m_throttle.offer(m_value.message(position))) {
        send(*message);
    }
}

void PopUpSlider::timerDone()
{
    if (const auto message = m_throttle.expired()) {
        send(*message);
    } else if (m_deleteWhenSent) {
        deleteLater();
    }
}

void PopUpSlider::send(const QString& message)
{
    // The timer is started first: whoever takes the message may delete this object.
    m_timer.start();
    emit response_message(message);
}

void PopUpSlider::increament_slider()
{
    change_slide(1);
}

void PopUpSlider::decreament_slider()
{
    change_slide(-1);
}

void PopUpSlider::change_slide(int step)
{
    if (m_slider == nullptr) {
        return;
    }
    if (const auto position = m_value.stepped(m_slider->value(), step)) {
        m_slider->setValue(*position);
    }
}
