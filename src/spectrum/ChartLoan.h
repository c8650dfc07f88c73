#pragma once

#include <QList>
#include <QPointer>

class QGridLayout;
class SpectralCard;

/// The loan of a card's first chart to another page, and which charts the card's own page is to
/// show when it is over.
///
/// While the chart is lent, the card shows that one alone and is polled for it although its page is
/// not on the screen; what setShown() says then holds when the chart comes back. A chart
/// that had the whole page gets it back, too.
class ChartLoan
{
public:
    /// Sets the card whose chart is lent. Without one nothing is lent. \param card not owned
    void setCard(SpectralCard* card);

    /// Puts the first chart into \a place, at (1, 0). May be called again while it is lent; without
    /// a place it does nothing.
    void lendTo(QGridLayout* place);

    /// Puts the chart back into the card's page; does nothing when it is not lent.
    void takeBack();

    /// Shows or hides a chart of the card's page: now, or when the lent chart is back.
    /// \param channel 0 to 2
    void setShown(int channel, bool shown);

private:
    bool isLent() const;

    QPointer<SpectralCard> m_card;
    QList<int> m_shown;  // channels whose charts are to be shown when the loan is over
    int m_enlarged = -1; // the one of them that is to have the whole page then
};
