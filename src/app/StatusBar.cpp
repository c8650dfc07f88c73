#include "app/StatusBar.h"

#include "app/Identity.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int BarHeight = 50;
constexpr int ButtonHeight = 30;
constexpr int ButtonWidth = 106;
constexpr int FontPixels = 16;
constexpr QColor DisabledText(0x16, 0x32, 0x4e);
constexpr QMargins Margins(8, 0, 4, 0);

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
{
    setObjectName(QStringLiteral("statusBar"));
    setStyleSheet(QStringLiteral(
        "QStatusBar {background-color: #919191 ;  font-size: 16px; border-width: 2px; border-style: solid; border-color: yellow;}"));
    showMessage(QStringLiteral("TORVA QN740 - Start Up"));
    setSizeGripEnabled(false);
    setMinimumHeight(BarHeight);
    addParts();
}

void StatusBar::addParts()
{
    auto* container = new QWidget;
    auto* row = new QHBoxLayout(container);
    row->setContentsMargins(Margins);
    m_linkMode = new QLabel;
    m_linkMode->setObjectName(QStringLiteral("statusLabel"));
    row->addWidget(m_linkMode);
    m_linking = addButton(
        "linkButton", QStringLiteral("Linking"), QStringLiteral("background-color: #4682b4"));
    auto* mainMenu = addButton(
        "mainMenuButton", QStringLiteral("Main Menu"), QStringLiteral("background-color: #008080"));
    m_view = addButton(
        "scopesButton", nameOf(Views::Scopes), QStringLiteral("background-color: #2e8b57"));
    for (QPushButton* button : {m_linking, mainMenu, m_view}) {
        row->addWidget(button);
    }
    auto* version = new QLabel(QStringLiteral(" v%1 ").arg(identity::version()));
    version->setObjectName(QStringLiteral("versionLabel"));
    version->setMinimumHeight(ButtonHeight);
    row->addWidget(version);
    container->setStyleSheet(QStringLiteral("background-color: #919191 ;"));
    addPermanentWidget(container, 0);

    connect(m_linking, &QPushButton::clicked, this, &StatusBar::linkingPressed);
    connect(mainMenu, &QPushButton::clicked, this, &StatusBar::mainMenuPressed);
    connect(m_view, &QPushButton::clicked, this, &StatusBar::viewPressed);
}

QPushButton* StatusBar::addButton(const char* name, const QString& text, const QString& color)
{
    auto* button = new QPushButton(text);
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
    if (ok) {
        showMessage(fields.value(1), milliseconds);
    }
}

void StatusBar::showMenuName(const QString& name)
{
    showMessage(QStringLiteral("QN740 Menu - ") + name);
}

void StatusBar::setLinkMode(const QString& label)
{
    m_linkMode->setText(label);
}

void StatusBar::setLinkingEnabled(bool on)
{
    m_linking->setEnabled(on);
}

void StatusBar::setNextView(Views::View /*current*/, Views::View next)
{
    m_view->setText(nameOf(next));
}
