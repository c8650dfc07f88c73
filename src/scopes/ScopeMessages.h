#pragma once

#include <QByteArray>
#include <QObject>
#include <QStringList>
#include <QVector>

class ScopesPage;

/// The messages by which the main unit changes what the scopes page shows, and what the operator's
/// choice of a scope mode sends.
///
/// Those that carry out a message take the fields behind the command word; a message with a number
/// that is missing or out of range is ignored, and logged at debug level. The list of modes is not
/// opened here: choiceWanted() asks for it, and applyChoice() takes the answer.
class ScopeMessages : public QObject
{
    Q_OBJECT

public:
    /// \param page what the messages change; not owned, it has to outlive this object
    explicit ScopeMessages(ScopesPage& page, QObject* parent = nullptr);

    /// "SM": what a demodulator's scope shows. \param fields demodulator 1 to 3, mode 0 to 3
    void setMode(const QStringList& fields);

    /// "SQ": shows or hides a scope's plots. \param fields demodulator 1 to 3, 0 to hide
    void setPlotsShown(const QStringList& fields);

    /// "PM": the magnitude/phase display. \param fields phase 0 to 1 for 0° to 180°, two magnitudes
    /// 0 to 100
    void setMagnitudesAndPhase(const QStringList& fields);

    /// Gives a scope's traces a colour. \param color number of "LC"; others change nothing
    /// \param trace 0 to 2 for the scope of Demod 1 to 3; others change nothing
    void setLineColor(int color, int trace);

    /// Asks, by choiceWanted(), which mode a demodulator's scope is to show.
    void chooseMode(int demodulator);

    /// Carries out the operator's choice and tells the demodulator. \param choice what the list of
    /// modes answered: the number of a mode; empty when it was cancelled
    void applyChoice(int demodulator, const QString& choice);

    /// Logs, at debug level, what a scope has received. \param i samples, parts of full scale
    /// \param q samples, parts of full scale
    void noteBlock(int demodulator, const QVector<double>& i, const QVector<double>& q) const;
    /// Logs, at debug level, what a scope has received. \param record five bytes of the SDI line
    void noteRecord(int demodulator, const QByteArray& record) const;

signals:
    /// Emitted when the operator is to choose a scope mode. \param choices the list's items, as
    /// "value text" separated by ":"
    void choiceWanted(int demodulator, const QString& choices);

    /// Emitted when the main unit is to be sent a message. \param message with its frame characters
    void response(const QString& message);

private:
    ScopesPage& m_page;
};
