#pragma once

#include "spectrum/ChartLoan.h"

#include <QObject>
#include <QStringList>

class QWidget;
class SpectralCard;

/// The messages by which the main unit starts the spectrum and changes what its page shows, and
/// what the operator's choice of a span does.
///
/// The page, a SpectralCard, is made by setUp(): at once for a card of the older type, with "ST"
/// for a K7150. Functions that carry out a message take the fields behind the command word. A
/// message with a number that is missing or out of range, or that comes before there is a page, is
/// ignored, and logged at debug level.
class SpectrumMessages : public QObject
{
    Q_OBJECT

public:
    /// \param olderCard whether the panel was started for a card of the older type
    /// \param pageParent the parent of the page that setUp() makes
    SpectrumMessages(bool olderCard, QWidget* pageParent, QObject* parent = nullptr);

    /// \return the page; nullptr while there is none.
    SpectralCard* card() const { return m_card; }

    /// Makes the page, if it is not there yet: for a card of the older type on the first of its
    /// three ports that opens, otherwise for a K7150 on all three.
    void setUp();

    /// "ST": starts the spectrum; sent again, tells the demodulators of a K7150 their spans again.
    /// \param fields "1"; anything else is ignored
    void start(const QStringList& fields);

    /// "SF": the frequency in the middle of a chart. \param fields channel 0 to 2, frequency in MHz
    void setFrequency(const QStringList& fields);

    /// "SP": the span of a chart. \param fields channel 0 to 2, index into the span table
    void setSpan(const QStringList& fields);

    /// "SH": shows or hides a chart; while the first one is lent, when that is back.
    /// \param fields channel 0 to 2, 0 to hide or 1 to show
    void setChartShown(const QStringList& fields);

    /// "LC": the colour of a chart's line, and by lineColorSet() that of the scope of the same
    /// number. \param fields number of the colour; trace 1 to 3, 0 or absent for all charts
    void setLineColor(const QStringList& fields);

    /// "HM": the horizontal markers of a chart. \param fields channel 0 to 2, levels in dB; no
    /// level removes the markers
    void setMarkers(const QStringList& fields);

    /// Asks, by choiceWanted(), for the span of the first chart, the one on the PAX main menu.
    void chooseSpan();

    /// Carries out the operator's choice. \param choice what the list of spans answered: an index
    /// into the span table; empty when it was cancelled
    void applyChoice(const QString& choice);

    /// Puts the first chart into \a place, at (1, 0), and hides the two others. May be called again
    /// while it is there.
    void lendChart(QGridLayout* place) { m_loan.lendTo(place); }

    /// Takes the first chart back; may be called at any time.
    void returnChart() { m_loan.takeBack(); }

signals:
    /// Emitted when the page was made, before the ports of a K7150 are opened.
    void pageMade(SpectralCard* page);

    /// Emitted when "ST" was carried out.
    void started();

    /// Emitted when "SH" came and there is no page.
    void pageMissed();

    /// Emitted when "LC" names one trace. \param color number of the colour \param trace 0 to 2
    void lineColorSet(int color, int trace);

    /// Emitted when the operator is to choose a span. \param choices the list's items, as "value
    /// text" separated by ":"
    void choiceWanted(const QString& choices);

    /// Emitted when the main unit is to be sent a message. \param message with its frame characters
    void response(const QString& message);

    /// Emitted when the main unit is to be sent a text as it is, without frame characters.
    void unframedResponse(const QString& text);

private:
    QString firstPort() const;
    bool hasPage(QLatin1String word) const;
    QString whyLineColorIgnored(int color, int number) const;
    bool hasChannel(QLatin1String word, int channel) const;

    bool m_olderCard;
    QWidget* m_pageParent;
    SpectralCard* m_card = nullptr;
    ChartLoan m_loan;
};
