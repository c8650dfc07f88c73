#pragma once

#include "app/Views.h"
#include "link/LinkHealth.h"
#include "wire/DropLog.h"

#include <QPointer>
#include <QStatusBar>

class MessageBox;
class NoticeLabel;
class QLabel;
class QPushButton;

/// The panel's status bar: a notice about the link, if there is one, and the main unit's text at
/// the left; the link mode, the buttons "Linking", "Main Menu" and the one that leads to the next
/// view, and the version at the right.
///
/// A text that is too long for its place ends in "…"; a touch on it shows all of it in a box.
/// While the bar is hidden, its notice is shown over the bottom edge of the window instead.
///
/// The bar only shows and reports: what the buttons do is decided by whoever follows its signals.
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

    /// Shows what is wrong with the link to the main unit, if anything is.
    void setLinkState(LinkState state);

    /// Enables or disables the button "Linking".
    void setLinkingEnabled(bool on);

    /// Shows on the view button where it leads.
    void setNextView(Views::View current, Views::View next);

    /// Makes the notice a part of the bar again, or of the window while the bar is hidden.
    /// \reimp
    void setVisible(bool visible) override;

signals:
    /// Emitted when the operator presses the button.
    ///@{
    void linkingPressed();
    void mainMenuPressed();
    void viewPressed();
    ///@}

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void addParts();
    static QPushButton* addButton(
        QWidget* parent, const char* name, const QString& text, const QString& color);
    void placeNotice();
    QRect textArea() const;
    QRect wipedArea() const;
    QString shownText() const;
    void showWholeText();

    NoticeLabel* m_notice;
    QWidget* m_parts = nullptr; // at the right
    QLabel* m_linkMode = nullptr;
    QPushButton* m_linking = nullptr;
    QPushButton* m_view = nullptr;
    QPointer<MessageBox> m_wholeText;
    bool m_textPressed = false;
    DropLog m_tooLong;
};
