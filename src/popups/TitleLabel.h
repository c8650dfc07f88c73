#pragma once

#include <QLabel>

// The title of a pop-up: as much of its text as fits, centred, on as many lines as it is high,
// broken inside words where there are no blanks. text() stays what it was set to.
class TitleLabel : public QLabel
{
    Q_OBJECT

public:
    explicit TitleLabel(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
