#include "spectrum/ChartKeys.h"

#include "touch/FittedLabel.h"
#include "touch/HeldKeys.h"
#include "touch/PopUpStyle.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

#include <QEvent>
#include <QGridLayout>
#include <QStackedLayout>

namespace {

constexpr int Columns = 2;
constexpr int Margin = 4;
constexpr int Spacing = 4;
constexpr int TitleHeight = 28;
constexpr int RepeatDelayMs = 400;
constexpr int RepeatMs = 100;

// Colours as in the pop-ups: a light ground with an edge, grey keys, blue while pressed.
const char* const Look =
    "ChartKeys {background-color: LightGray; border: 2px solid black; border-radius: 4px;} "
    "#chartKeyPage {background-color: LightGray;} "
    "QPushButton {background-color: #919191; color: black; border: 2px solid black; border-radius: 4px; font-size: 18px;} "
    "QPushButton:checked {background-color: #2e8b57;} "
    "QPushButton:pressed {background-color: #4169e1;}";

} // namespace

ChartKeys::ChartKeys(chartKeys::Place place, QWidget* parent)
    : QFrame(parent)
    , m_place(place)
    , m_title(new FittedLabel(this))
    , m_stack(new QStackedLayout)
{
    setObjectName(QStringLiteral("chartKeys"));
    setStyleSheet(QLatin1String(Look));
    m_title->setObjectName(QStringLiteral("chartKeysTitle"));
    m_title->setStyleSheet(popUpStyle::title());
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setFixedHeight(TitleHeight);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Margin, Margin, Margin, Margin);
    column->setSpacing(Spacing);
    column->addWidget(m_title);
    column->addLayout(m_stack, 1);
    open(chartKeys::Page::First);
}

void ChartKeys::open(chartKeys::Page page)
{
    QWidget*& widget = m_pages[static_cast<int>(page)];
    if (widget == nullptr) {
        widget = newPage(page);
        m_stack->addWidget(widget);
    }
    m_page = page;
    m_title->setText(chartKeys::title(page));
    m_stack->setCurrentWidget(widget);
}

QWidget* ChartKeys::newPage(chartKeys::Page page)
{
    auto* widget = new QFrame(this);
    widget->setObjectName(QStringLiteral("chartKeyPage"));
    auto* grid = new QGridLayout(widget);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(Spacing);
    int cell = 0;
    for (const chartKeys::Entry& entry : chartKeys::entries(page, m_place)) {
        const int columns = entry.isWide ? Columns : 1;
        grid->addWidget(newKey(entry, widget), cell / Columns, cell % Columns, 1, columns);
        grid->setRowStretch(cell / Columns, 1);
        cell += columns;
    }
    for (int column = 0; column < Columns; ++column) {
        grid->setColumnStretch(column, 1);
    }
    return widget;
}

TextButton* ChartKeys::newKey(const chartKeys::Entry& entry, QWidget* page)
{
    auto* button = new TextButton(entry.text, page, TextButton::Shrinking);
    button->setObjectName(QStringLiteral("chartKey%1").arg(static_cast<int>(entry.key)));
    button->setMinimumHeight(touch::MinTarget);
    button->setFocusPolicy(Qt::NoFocus);
    if (entry.kind == chartKeys::Kind::Repeat) {
        button->setAutoRepeat(true);
        button->setAutoRepeatDelay(RepeatDelayMs);
        button->setAutoRepeatInterval(RepeatMs);
    }
    connect(button, &TextButton::clicked, this, [this, entry, button] {
        showState(entry.key, button, entry.kind); // The click has changed a switch by itself.
        press(entry.key);
    });
    m_keys.insert(static_cast<int>(entry.key), {button, entry.kind});
    showState(entry.key, button, entry.kind);
    return button;
}

// A key that is held down lets go when a window blocks this one or when the keys disappear: its
// release may never reach it.
bool ChartKeys::event(QEvent* event)
{
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::Hide) {
        touch::letGo(this);
    }
    return QFrame::event(event);
}

void ChartKeys::press(chartKeys::Key key)
{
    const chartKeys::Page next = chartKeys::pageBehind(key, m_page);
    if (next != m_page) {
        open(next);
    } else {
        emit pressed(key);
    }
}

void ChartKeys::setInEffect(const QVector<chartKeys::Key>& keys)
{
    if (keys == m_inEffect) {
        return;
    }
    m_inEffect = keys;
    for (auto it = m_keys.cbegin(); it != m_keys.cend(); ++it) {
        showState(static_cast<chartKeys::Key>(it.key()), it.value().button, it.value().kind);
    }
}

void ChartKeys::showState(chartKeys::Key key, TextButton* button, chartKeys::Kind kind) const
{
    if (kind == chartKeys::Kind::Switch || kind == chartKeys::Kind::Choice) {
        const bool on = m_inEffect.contains(key);
        button->setCheckable(true);
        button->setChecked(on);
        button->setMarks({on ? keyMarks::Lamp::On : keyMarks::Lamp::Off, false});
    }
}
