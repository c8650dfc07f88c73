#pragma once

#include <QFont>
#include <QLabel>

// A label whose text never decides how large it is: what does not fit its room is broken into
// lines at blanks, then drawn in a smaller font, then broken anywhere, then elided. text() stays
// what it was set to, and is always plain text.
class FittedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit FittedLabel(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // How a text is drawn: `flags` are Qt::TextFlag values for line breaks.
    struct Fit
    {
        QString text; // elided where it must be
        QFont font;
        int flags = 0;
    };
    // In: a text, the font it should have, the room in pixels. Out: the first way of drawing it
    // that fits.
    static Fit fit(const QString& text, const QFont& font, const QSize& room);

protected:
    void paintEvent(QPaintEvent* event) override;
};
