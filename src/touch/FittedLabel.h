#pragma once

#include "touch/TextFit.h"

#include <QLabel>

/// A label whose text never decides how large the label is.
///
/// The layout gives the label a room; when it is painted, its text is fitted into that room by
/// TextFit: broken into lines at blanks, then drawn in smaller letters, then broken anywhere, then
/// shortened. text() stays what it was set to, and is always plain text.
class FittedLabel : public QLabel
{
    Q_OBJECT

public:
    /// How far a label's text is changed before it is shortened.
    static constexpr TextFit::Limits Limits{12, 9, 2000, true};

    /// Makes a label without text.
    explicit FittedLabel(QWidget* parent = nullptr);

    /// \reimp No size: the text asks for none.
    QSize sizeHint() const override;
    /// \reimp No size: the text asks for none.
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TextFit m_fit;
};
