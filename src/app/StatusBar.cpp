#include "app/StatusBar.h"

#include "app/Identity.h"
#include "app/Limits.h"
#include "app/NoticeLabel.h"
#include "touch/MessageBox.h"
#include "wire/Log.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyleOption>

namespace {

constexpr int BarHeight = 50;
constexpr int ButtonHeight = 30;
constexpr int ButtonWidth = 106;
constexpr int FontPixels = 16;
constexpr QColor DisabledText(0x16, 0x32, 0x4e);
constexpr QMargins Margins(8, 0, 4, 0);
constexpr int Border = 2;        // of the bar's style sheet
constexpr int TextMargin = 6;    // left of the text
constexpr int PartsMargin = 2;   // between the text and the parts at the right
constexpr int LetterReach = 2;   // by which a letter may stand left of the text's place
constexpr int MaxMeasured = 500; // characters; no more of them fit into the bar
constexpr QSize OkSize(110, 60);

QString nameOf(Views::View view)
{
    switch (view) {
    case Views::Menus:
        return QStringLiteral("Menu");
    case Views::Scopes:
        return QStringLiteral("Scopes");
    case Views::Spectrum:
        return QStringLiteral("Spectrum");
    }
    return {};
}

} // namespace

StatusBar::StatusBar(QWidget* parent)
    : QStatusBar(parent)
    , m_notice(new NoticeLabel(this))
    , m_tooLong(&logLink,
          QStringLiteral("the text of the status bar is cut off after %1 characters")
              .arg(appLimits::MaxStatusCharacters))
{
    setObjectName(QStringLiteral("statusBar"));
    setStyleSheet(QStringLiteral(
        "QStatusBar {background-color: #919191 ;  font-size: 16px; border-width: 2px; border-style: solid; border-color: yellow;}"));
    showMessage(QStringLiteral("TORVA QN740 - Start Up"));
    setSizeGripEnabled(false);
    setMinimumHeight(BarHeight);
    addParts();
    // The bar itself repaints no more than the place of the text.
    connect(this, &QStatusBar::messageChanged, this, [this] { update(wipedArea()); });
}

// Each part is made where it belongs, in what has its style sheet already: a part that gets another
// parent or whose parent gets a style sheet works out its look once more.
void StatusBar::addParts()
{
    auto* container = new QWidget(this);
    container->setStyleSheet(QStringLiteral("background-color: #919191 ;"));
    auto* row = new QHBoxLayout(container);
    row->setContentsMargins(Margins);
    m_linkMode = new QLabel(container);
    m_linkMode->setObjectName(QStringLiteral("statusLabel"));
    m_linkMode->setTextFormat(Qt::PlainText);
    row->addWidget(m_linkMode);
    m_linking = addButton(container, "linkButton", QStringLiteral("Linking"),
        QStringLiteral("background-color: #4682b4"));
    auto* mainMenu = addButton(container, "mainMenuButton", QStringLiteral("Main Menu"),
        QStringLiteral("background-color: #008080"));
    m_view = addButton(container, "scopesButton", nameOf(Views::Scopes),
        QStringLiteral("background-color: #2e8b57"));
    for (QPushButton* button : {m_linking, mainMenu, m_view}) {
        row->addWidget(button);
    }
    auto* version = new QLabel(QStringLiteral(" v%1 ").arg(identity::version()), container);
    version->setObjectName(QStringLiteral("versionLabel"));
    version->setMinimumHeight(ButtonHeight);
    row->addWidget(version);
    addPermanentWidget(container, 0);
    m_parts = container;

    connect(m_linking, &QPushButton::clicked, this, &StatusBar::linkingPressed);
    connect(mainMenu, &QPushButton::clicked, this, &StatusBar::mainMenuPressed);
    connect(m_view, &QPushButton::clicked, this, &StatusBar::viewPressed);
}

QPushButton* StatusBar::addButton(
    QWidget* parent, const char* name, const QString& text, const QString& color)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(name));
    button->setMinimumHeight(ButtonHeight);
    button->setStyleSheet(color);
    // The buttons are pressed by fingers: they are as high as the bar allows.
    button->setMinimumWidth(ButtonWidth);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    QFont font = button->font();
    font.setPixelSize(FontPixels);
    button->setFont(font);
    // The style's own text colour of a disabled button is as pale as the button.
    QPalette palette = button->palette();
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, DisabledText);
    button->setPalette(palette);
    return button;
}

void StatusBar::takeText(const QStringList& fields)
{
    bool ok = false;
    const int milliseconds = fields.value(0).toInt(&ok);
    if (!ok) {
        return;
    }
    const QString text = fields.value(1);
    if (text.size() > appLimits::MaxStatusCharacters) {
        m_tooLong.add();
    }
    showMessage(text.left(appLimits::MaxStatusCharacters), milliseconds);
}

void StatusBar::showMenuName(const QString& name)
{
    showMessage(QStringLiteral("QN740 Menu - ") + name);
}

void StatusBar::setLinkMode(const QString& label)
{
    m_linkMode->setText(label);
}

void StatusBar::setLinkState(LinkState state)
{
    m_notice->setState(state);
    placeNotice();
    update();
}

void StatusBar::setVisible(bool visible)
{
    QStatusBar::setVisible(visible);
    placeNotice();
}

void StatusBar::resizeEvent(QResizeEvent* event)
{
    QStatusBar::resizeEvent(event);
    placeNotice();
}

void StatusBar::placeNotice()
{
    if (isHidden() && !isWindow()) {
        m_notice->standOver(window());
    } else {
        m_notice->standIn(this, rect().adjusted(Border, Border, -Border, -Border));
    }
}

// Where the text stands: between the notice and the parts at the right.
QRect StatusBar::textArea() const
{
    const bool hasNotice = !m_notice->isHidden();
    QRect area = rect().adjusted(TextMargin, 0, 0, 0);
    area.setRight(m_parts->x() - PartsMargin);
    area.setLeft(hasNotice ? m_notice->geometry().right() + TextMargin : area.left());
    return area;
}

// What a new text wipes off: some letters, such as "T" and "j", reach out of their place.
QRect StatusBar::wipedArea() const
{
    return textArea().adjusted(-LetterReach, 0, PartsMargin, 0);
}

QString StatusBar::shownText() const
{
    const QString text = currentMessage();
    const QString start = text.size() > MaxMeasured ? text.left(MaxMeasured) + QChar(0x2026) : text;
    return fontMetrics().elidedText(start, Qt::ElideRight, textArea().width());
}

// As QStatusBar paints itself, but for the text, which that would cut off.
void StatusBar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_PanelStatusBar, &option, &painter, this);
    option.rect = m_parts->geometry().adjusted(-2, -1, 2, 1);
    option.state = QStyle::State_None;
    style()->drawPrimitive(QStyle::PE_FrameStatusBarItem, &option, &painter, m_parts);
    painter.setClipRect(wipedArea());
    painter.setPen(palette().windowText().color());
    painter.drawText(
        textArea(), Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

void StatusBar::mousePressEvent(QMouseEvent* event)
{
    m_textPressed = textArea().contains(event->position().toPoint());
}

void StatusBar::mouseReleaseEvent(QMouseEvent* event)
{
    const bool onText = textArea().contains(event->position().toPoint());
    if (m_textPressed && onText && shownText() != currentMessage()) {
        showWholeText();
    }
    m_textPressed = false;
}

void StatusBar::showWholeText()
{
    delete m_wholeText;
    m_wholeText = new MessageBox(window());
    m_wholeText->setObjectName(QStringLiteral("statusTextBox"));
    m_wholeText->setNonBlocking(QStringLiteral("font-size: 22px;"));
    m_wholeText->setTextFormat(Qt::PlainText);
    m_wholeText->setText(currentMessage());
    m_wholeText->addOk(OkSize);
    m_wholeText->setArea(window()->geometry());
    m_wholeText->show();
}

void StatusBar::setLinkingEnabled(bool on)
{
    m_linking->setEnabled(on);
}

void StatusBar::setNextView(Views::View /*current*/, Views::View next)
{
    m_view->setText(nameOf(next));
}
