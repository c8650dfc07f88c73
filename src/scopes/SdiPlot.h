#pragma once

#include "scopes/PlotContent.h"

#include <QByteArray>
#include <QRgb>

#include <deque>

/// SDI records as strips, one above the other.
///
/// Strip n shows byte n of the last records, 0 at its bottom and 255 at its top, the newest record
/// at the right. addRecord() only keeps a record; paint() draws them.
class SdiPlot : public PlotContent
{
public:
    static constexpr int RecordBytes = 5; ///< Bytes of a record.
    static constexpr int Records = 100;   ///< Records from one edge to the other.

    /// Adds a record. Its first RecordBytes bytes count; a shorter one is ignored.
    void addRecord(const QByteArray& record);

    /// Sets how many strips are shown.
    /// \param count 1 to RecordBytes; a number outside is taken as the nearest of the two.
    void setStripCount(int count);
    /// \return how many strips are shown.
    int stripCount() const { return m_strips; }

    /// \return the records on the screen, the oldest first.
    const std::deque<QByteArray>& records() const { return m_records; }

    PlotAxes axes() const override;
    void setLineColor(const QColor& color) override { m_color = color; }
    void clear() override;
    void resize(QSize size) override { m_size = size; }
    void paint(QImage& picture) override;

private:
    QColor m_color = Qt::red;
    QSize m_size;
    int m_strips = RecordBytes;
    std::deque<QByteArray> m_records;
};
