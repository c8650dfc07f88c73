#include "tools/try/Editors.h"

#include "popups/TouchSlider.h"
#include "tools/try/Glass.h"
#include "tools/try/Pattern.h"
#include "touch/FingerScroll.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QStyle>
#include <QStyleOptionSlider>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

finger::Target fault(const QString& reason)
{
    return {reason, {}};
}

QString openName()
{
    const QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal->objectName() : QString();
}

// Where the key of the open editor with exactly this text is touched.
finger::Target keyOfEditor(const QString& text)
{
    const QWidget* modal = QApplication::activeModalWidget();
    const auto buttons =
        modal != nullptr ? modal->findChildren<QAbstractButton*>() : QList<QAbstractButton*>();
    for (const QAbstractButton* button : buttons) {
        if (button->isVisible() && glass::label(*button) == text) {
            return finger::on(*button);
        }
    }
    return fault(u"no key \"%1\" in the open editor"_s.arg(text));
}

finger::Target typeOnPad(const QString& entry, const QString& confirm)
{
    const bool isNegative = entry.startsWith(u'-');
    const QString characters = isNegative ? entry.mid(1) + u'-' : entry;
    finger::Target last = keyOfEditor(confirm);
    for (const QChar character : characters) {
        finger::Target key = keyOfEditor(character);
        if (!key.fault.isEmpty() || !last.fault.isEmpty()) {
            return key.fault.isEmpty() ? last : key;
        }
        finger::tap(key.point);
    }
    return last;
}

// The letters of the keyboard are capital or small; "CAPS" changes that.
finger::Target typeOnKeyboard(const QString& entry)
{
    for (const QChar character : entry) {
        finger::Target key = keyOfEditor(character);
        if (!key.fault.isEmpty() && character.isLetter()) {
            finger::tap(keyOfEditor(u"CAPS"_s).point);
            key = keyOfEditor(character);
        }
        if (!key.fault.isEmpty()) {
            return key;
        }
        finger::tap(key.point);
    }
    return keyOfEditor(u"RETURN"_s);
}

// Drags the contents of a scrolled list until this part of it is seen.
void scrollTo(const QWidget& part, FingerScroll& list)
{
    constexpr int MaxDrags = 200;
    const QWidget* seen = list.viewport();
    for (int drags = 0; drags < MaxDrags; ++drags) {
        const QRect place(part.mapTo(seen, QPoint(0, 0)), part.size());
        const int wanted = seen->rect().center().y() - place.center().y();
        if (seen->rect().contains(place)) {
            return;
        }
        const int reach = seen->height() - 2 * FingerScroll::DragDistance;
        const int way = std::clamp(wanted, -reach, reach);
        const int edge = FingerScroll::DragDistance;
        const QPoint from(seen->width() / 2, way > 0 ? edge : seen->height() - edge);
        finger::down(seen->mapToGlobal(from));
        finger::move(seen->mapToGlobal(from + QPoint(0, way)));
        finger::up(seen->mapToGlobal(from + QPoint(0, way)));
    }
}

finger::Target chooseFromPopUp(const QWidget& popUp, const QString& pattern)
{
    auto* view = popUp.findChild<QAbstractItemView*>();
    for (int row = 0; view != nullptr && row < view->model()->rowCount(); ++row) {
        const QModelIndex index = view->model()->index(row, 0);
        if (matches(pattern, index.data().toString().simplified())) {
            view->scrollTo(index);
            return {{}, view->viewport()->mapToGlobal(view->visualRect(index).center())};
        }
    }
    return fault(u"no item \"%1\" in the open list"_s.arg(pattern));
}

// The middle of the slider's handle at a value, as TouchSlider places it.
QPoint handleAt(const TouchSlider& slider, int value)
{
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.subControls = QStyle::SC_None;
    option.activeSubControls = QStyle::SC_None;
    option.orientation = Qt::Horizontal;
    option.state |= QStyle::State_Horizontal;
    option.minimum = slider.minimum();
    option.maximum = slider.maximum();
    option.singleStep = slider.singleStep();
    option.pageStep = slider.pageStep();
    option.tickPosition = slider.tickPosition();
    option.tickInterval = slider.tickInterval();
    option.sliderPosition = value;
    option.sliderValue = value;
    return slider.style()
        ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider)
        .center();
}

} // namespace

finger::Target editors::type(const QString& entry, const QString& unit)
{
    const QString open = openName();
    if (open == u"PopUpNumberPad"_s || open == u"PopUpIpPad"_s) {
        return typeOnPad(entry, unit.isEmpty() ? u"Enter"_s : unit);
    }
    if (open == u"FileNameEdit"_s && unit.isEmpty()) {
        return typeOnKeyboard(entry);
    }
    return fault(u"no number pad, address pad or keyboard is open"_s);
}

finger::Target editors::choose(const QString& pattern)
{
    if (const QWidget* popUp = QApplication::activePopupWidget()) {
        return chooseFromPopUp(*popUp, pattern);
    }
    const QString open = openName();
    if (open != u"PopUpKeyBoard"_s && open != u"PopUpFileBoard"_s) {
        return fault(u"no list is open"_s);
    }
    const QWidget* modal = QApplication::activeModalWidget();
    for (QAbstractButton* button : glass::buttons(pattern)) {
        if (button->window() != modal) {
            continue;
        }
        for (FingerScroll* list : modal->findChildren<FingerScroll*>()) {
            if (list->isAncestorOf(button)) {
                scrollTo(*button, *list);
            }
        }
        return finger::on(*button);
    }
    return fault(u"no item \"%1\" in the open list"_s.arg(pattern));
}

finger::Target editors::slide(int value)
{
    const QWidget* modal = QApplication::activeModalWidget();
    const auto* slider = modal != nullptr ? modal->findChild<TouchSlider*>() : nullptr;
    if (slider == nullptr) {
        return fault(u"no slider is open"_s);
    }
    if (value < slider->minimum() || value > slider->maximum()) {
        return fault(
            u"the slider goes from %1 to %2"_s.arg(slider->minimum()).arg(slider->maximum()));
    }
    const QPoint to = slider->mapToGlobal(handleAt(*slider, value));
    finger::down(slider->mapToGlobal(slider->handle().center()));
    finger::move(to);
    if (slider->value() == value) {
        return {{}, to};
    }
    finger::up(to);
    return fault(u"a finger gets the slider to %1, not to %2"_s.arg(slider->value()).arg(value));
}
