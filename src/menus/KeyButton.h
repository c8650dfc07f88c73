#pragma once

#include <QPushButton>

// A push button whose text is broken into lines that fit its width when it is painted, at blanks
// where there are any, and elided ("…") where the height is too small for all lines. An "&"
// is shown as it is; text() stays what it was set to.
class KeyButton : public QPushButton
{
    Q_OBJECT

public:
    explicit KeyButton(const QString& text, QWidget* parent = nullptr);

    // In: a text, the metrics of its font, the room for it in pixels. Out: the text with line
    // breaks, every line at most `width` wide and all of them at most `height` high, but one line
    // at least.
    static QString fitted(const QString& text, const QFontMetrics& metrics, int width, int height);

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
};
