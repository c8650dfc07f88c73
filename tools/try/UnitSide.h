#pragma once

#include "sim/line/FrameSplitter.h"
#include "sim/unit/MenuFile.h"
#include "sim/unit/UnitKeys.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

class PseudoTerminal;
class UnitDevices;

/// The main unit of a scenario, at the other end of the panel's line.
///
/// It sends what the scenario says, notes what the panel sends, and confirms what keys send as the
/// simulator does. To know when the panel has come to rest it asks for the panel's version: the
/// answer comes after everything that the panel had to say before. These questions and answers are
/// not part of the traffic that a scenario sees.
class UnitSide : public QObject
{
    Q_OBJECT

public:
    /// A message that went over the line, in either direction.
    struct Traffic
    {
        qint64 ms = 0;          ///< since the start
        bool fromPanel = false; ///< its direction
        QString body;           ///< without frame characters, if it has a frame
    };

    /// Makes the panel's line; a panel that is made from now on opens it.
    explicit UnitSide(QObject* parent = nullptr);
    ~UnitSide() override;

    /// \return why there is no line; empty when there is one
    QString error() const;

    /// Sends a message. \param body without frame characters
    void send(const QString& body);
    /// Sends characters 0 to 255 as bytes.
    void sendRaw(const QString& bytes);
    /// Sends the messages of a menu file one after the other, with its times to wait.
    void sendMenus(const QList<MenuStep>& steps);

    /// Sets whether messages of keys are confirmed.
    void setAnswering(bool on) { m_answering = on; }

    /// Notes that the operator has done something that the panel has not answered yet.
    void noteTouch() { m_moved = true; }

    /// \return whether the panel has handled all that was sent, and has nothing more to send.
    /// Asks the panel when that is not known; call it again later then. While an editor that the
    /// unit itself has opened holds up the line, the panel counts as quiet.
    bool isQuiet();

    /// \return the messages of the panel since the start
    const QStringList& heard() const { return m_heard; }
    /// \return what went over the line since the start
    const QList<Traffic>& traffic() const { return m_traffic; }

signals:
    /// Emitted for each message in either direction.
    void passed(const UnitSide::Traffic& message);

private:
    void take(const QByteArray& bytes);
    void takeMessage(const QString& body);
    void sendNextMenus();
    void ask();
    void note(bool fromPanel, const QString& body);

    std::unique_ptr<UnitDevices> m_devices;
    PseudoTerminal* m_line = nullptr;
    FrameSplitter m_splitter;
    UnitKeys m_keys;
    QList<MenuStep> m_menus;
    QTimer m_pause;
    QElapsedTimer m_clock;
    QElapsedTimer m_asked;
    QList<bool> m_versions; // the awaited answers to "VER"; true: to a question of our own
    QStringList m_heard;
    QList<Traffic> m_traffic;
    bool m_answering = true;
    bool m_moved = true; // whether anything has happened since the panel was asked
};
