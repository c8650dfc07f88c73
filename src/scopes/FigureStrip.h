#pragma once

#include "scopes/ScopeFigure.h"

#include <QFont>
#include <QWidget>

/// A row of numbers below a plot, each under its name.
///
/// Only the numbers that have changed are painted again.
class FigureStrip : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Height = 44; ///< In pixels.

    /// Creates a strip without numbers.
    explicit FigureStrip(QWidget* parent = nullptr);

    /// Shows other numbers; nothing is painted for those that are shown already.
    void setFigures(const QVector<ScopeFigure>& figures);
    /// \return what is shown.
    const QVector<ScopeFigure>& figures() const { return m_figures; }

    /// \return what setFigures() has changed since the last call.
    QRegion takeChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect cell(qsizetype figure) const;
    QRect valuePlace(qsizetype figure) const;
    QFont fontOf(int pixels) const;

    QVector<ScopeFigure> m_figures;
    QRegion m_changed;
};
