#pragma once

#include "link/Limits.h"
#include "link/LinkHealth.h"
#include "wire/DropLog.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class keySerial;
class LinkModeDialog;
class LinkWatch;
class QWidget;

/// The panel's end of the link to the main unit: everything that is sent, and the link mode.
///
/// A finished message comes to send(), is widened for the link mode and written to the line in one
/// write; write() leaves out the widening. Both log what they write. What the main unit sends is
/// cut out of the line by keySerial, serial(), and does not pass through here, but for the messages
/// about the link mode. Whether it sends at all is watched by LinkWatch; whoever shows it follows
/// healthChanged().
///
/// The link mode is changed by the main unit ("Slave"), or by the operator in a dialog; whoever
/// shows it follows modeChanged().
class LinkControl : public QObject
{
    Q_OBJECT

public:
    /// The number of bytes that may wait in the port; what is sent while more are waiting is lost.
    static constexpr qint64 MaxUnsentBytes = linkLimits::MaxUnsentBytes;

    /// \param window the parent, in whose middle the dialog stands
    explicit LinkControl(QWidget* window);

    /// Opens the line. \param device without a directory: "ttyO1"
    void open(const QString& device);

    /// \return the line; never nullptr.
    keySerial* serial() const { return m_serial; }

    /// Sends a message, widened for the link mode. \param message with its frame characters
    void send(const QString& message);

    /// Sends a text as it is, in one write. \param text characters 0 to 255
    void write(const QString& text);

    /// Answers "PING" by "PONG".
    void answerPing();

    /// \return what is known of the link now.
    LinkState health() const;

    /// \return 0 none, 1 diversity, 2 frequency diversity; another number when one was stored.
    int mode() const { return m_mode; }

    /// Goes over to a link mode; it is neither sent nor stored.
    void setMode(int mode);

    /// Reads the stored link mode, 0 when there is none.
    void restoreMode();

    /// Stores the link mode.
    void storeMode() const;

    /// Carries out "Slave": without a field the mode is sent, with the number of a mode it is set.
    /// It is then stored: at once, or at the end of the turn if the message came over the line.
    void takeModeMessage(const QStringList& fields);

    /// What the operator does to the radio button of a mode: checking it sets, sends and stores the
    /// mode; unchecking it does nothing.
    void toggleMode(int mode, bool on);

    /// Opens the dialog in which the operator chooses the mode, if it is not open.
    void openDialog();

signals:
    /// Emitted when what is known of the link has changed.
    void healthChanged(LinkState state);

    /// Emitted when the link mode was set. \param label how it is shown, empty for no linking
    void modeChanged(const QString& label);

    /// Emitted when the dialog opens.
    void dialogOpened();

    /// Emitted when the dialog was closed.
    void dialogClosed();

private:
    void connectDialog();
    void sendMode();
    void storeAfterTurn();
    void storeIfWanted();

    QWidget* m_window;
    keySerial* m_serial;
    LinkWatch* m_watch;
    QPointer<LinkModeDialog> m_dialog; // while it is open
    int m_mode = 0;
    bool m_storeWanted = false;
    DropLog m_unsent;
};
