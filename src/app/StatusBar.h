#pragma once

#include "app/Views.h"

#include <QStatusBar>

class QLabel;
class QPushButton;

/// The panel's status bar: the main unit's text at the left; the link mode, the buttons "Linking",
/// "Main Menu" and the one that leads to the next view, and the version at the right.
///
/// It only shows and reports: what the buttons do is decided by whoever follows its signals.
class StatusBar : public QStatusBar
{
    Q_OBJECT

public:
    /// Shows the start-up text, until another comes.
    explicit StatusBar(QWidget* parent = nullptr);

    /// "SB": shows a text. \param fields the time in ms, 0 until the next text comes; the text. A
    /// time that is not an integer: nothing
    void takeText(const QStringList& fields);

    /// Shows which menu the main unit has chosen.
    void showMenuName(const QString& name);

    /// Shows the link mode. \param label empty for no linking
    void setLinkMode(const QString& label);

    /// Enables or disables the button "Linking".
    void setLinkingEnabled(bool on);

    /// Shows on the view button where it leads.
    void setNextView(Views::View current, Views::View next);

signals:
    /// Emitted when the operator presses the button.
    ///@{
    void linkingPressed();
    void mainMenuPressed();
    void viewPressed();
    ///@}

private:
    void addParts();
    QPushButton* addButton(const char* name, const QString& text, const QString& color);

    QLabel* m_linkMode = nullptr;
    QPushButton* m_linking = nullptr;
    QPushButton* m_view = nullptr;
};
