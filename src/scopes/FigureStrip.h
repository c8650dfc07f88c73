#pragma once

#include "scopes/ScopeFigure.h"

#include <QWidget>

/// A row of numbers below a plot, each under its name.
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

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVector<ScopeFigure> m_figures;
};
