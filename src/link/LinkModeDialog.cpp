#include "link/LinkModeDialog.h"

#include "link/LinkMode.h"
#include "touch/Edge.h"
#include "touch/Picture.h"
#include "touch/PopUpStyle.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

constexpr int TitleHeight = 45;
constexpr int CloseWidth = 150;
constexpr int CloseHeight = 55;
constexpr int ModeHeight = 60;

// The platform's own circle is too small for a finger and hard to see on the grey.
QString circleSheet()
{
    return QStringLiteral(
        "QRadioButton::indicator {width: 26px; height: 26px; border: 2px solid black; border-radius: 15px; background-color: white;} QRadioButton::indicator:checked {background-color: qradialgradient(cx: 0.5, cy: 0.5, radius: 0.5, fx: 0.5, fy: 0.5, stop: 0 black, stop: 0.55 black, stop: 0.6 white, stop: 1 white);}");
}

// Takes a touch anywhere in its row, not on the circle and the text alone.
class ModeButton : public QRadioButton
{
public:
    using QRadioButton::QRadioButton;

protected:
    bool hitButton(const QPoint& at) const override { return rect().contains(at); }
};

} // namespace

LinkModeDialog::LinkModeDialog(QWidget* parent)
    : QGroupBox(QStringLiteral("Link Mode"), parent)
    , m_layout(new QVBoxLayout(this))
    , m_none(addMode("noLinking", QStringLiteral("No Linking")))
    , m_diversity(addMode("diversityLinking",
          QStringLiteral("Diversity Linking - All Tuners & Demodulators Linked")))
    , m_frequency(addMode("frequencyDiversityLinking",
          QStringLiteral("Frequency Diversity Linking - All Demodulators Linked")))
    , m_close(new QPushButton(QStringLiteral("Close")))
{
    setObjectName(QStringLiteral("linkDialog"));
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("QN740 Configuration Settings"));
    setWindowIcon(touch::picture(QStringLiteral(":/MyFiles/TORVA-globe.png")));
    setStyleSheet(QStringLiteral("background-color:darkgray; font-size: 22px; "));
    addTitle();
    m_close->setObjectName(QStringLiteral("closeButton"));
    m_close->setFixedWidth(CloseWidth);
    m_close->setMinimumHeight(CloseHeight);
    m_layout->addWidget(m_close, 0, Qt::AlignHCenter);

    connect(m_none, &QRadioButton::toggled, this, &LinkModeDialog::masterToggled);
    connect(m_diversity, &QRadioButton::toggled, this, &LinkModeDialog::divToggled);
    connect(m_frequency, &QRadioButton::toggled, this, &LinkModeDialog::freqToggled);
    connect(m_close, &QPushButton::clicked, this, &QWidget::close);
}

// The unit's screen has no window frames, so the window title alone would not be seen.
void LinkModeDialog::addTitle()
{
    auto* title = new QLabel(windowTitle());
    title->setObjectName(QStringLiteral("titleLabel"));
    title->setStyleSheet(popUpStyle::title());
    title->setAlignment(Qt::AlignCenter);
    title->setFixedHeight(TitleHeight);
    m_layout->insertWidget(0, title);
}

QRadioButton* LinkModeDialog::addMode(const char* name, const QString& text)
{
    QString shown = text;
    shown.replace(QLatin1Char('&'), QLatin1String("&&")); // QRadioButton does not show a lone "&"
    auto* mode = new ModeButton(shown);
    mode->setObjectName(QLatin1String(name));
    mode->setMinimumHeight(ModeHeight);
    mode->setStyleSheet(circleSheet());
    m_layout->addWidget(mode);
    return mode;
}

QRadioButton* LinkModeDialog::button(int mode) const
{
    switch (mode) {
    case linkMode::None:
        return m_none;
    case linkMode::Diversity:
        return m_diversity;
    case linkMode::FrequencyDiversity:
        return m_frequency;
    default:
        return nullptr;
    }
}

void LinkModeDialog::setMode(int mode)
{
    if (QRadioButton* radio = button(mode)) {
        radio->setChecked(true);
    }
}

// Quirk: the button changes in silence, so a mode that "Slave" sets is not sent back. See "Quirks"
// in docs/architecture.md.
void LinkModeDialog::showMode(int mode)
{
    if (QRadioButton* radio = button(mode)) {
        const QSignalBlocker silent(radio);
        radio->setChecked(true);
    }
}

void LinkModeDialog::showIn(const QRect& area)
{
    ensurePolished();
    QRect place(QPoint(), sizeHint().boundedTo(area.size()));
    place.moveCenter(area.center());
    setGeometry(place);
    show();
}

void LinkModeDialog::paintEvent(QPaintEvent* event)
{
    QGroupBox::paintEvent(event);
    touch::paintEdge(this);
}

void LinkModeDialog::closeEvent(QCloseEvent* event)
{
    QGroupBox::closeEvent(event);
    emit closed();
}
