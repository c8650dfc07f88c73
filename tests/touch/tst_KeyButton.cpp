#include "touch/KeyButton.h"

#include "support/Heap.h"
#include "support/TestMain.h"
#include "touch/KeyFace.h"
#include "touch/KeyStyle.h"

#include <QGridLayout>
#include <QGroupBox>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize KeySize(124, 59);

// A black page with a style sheet and one button, as a menu has it.
struct Page
{
    explicit Page(TextButton* key)
        : button(key)
    {
        box.setStyleSheet(u"QGroupBox {background-color: black;}"_s);
        box.resize(200, 120);
        box.ensurePolished();
        button->setParent(&box);
        button->move(20, 30);
        button->resize(KeySize);
    }

    QGroupBox box;
    TextButton* button;
};

// What a button with this sheet looks like that leaves everything to the style.
TextButton* styledButton(const QString& text, const QString& sheet)
{
    auto* button = new TextButton(text);
    button->setStyleSheet(sheet);
    return button;
}

// Returns the red, green and blue of every pixel.
QImage picture(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QString otherSheet()
{
    return u"QPushButton {background-color: #224466; color: white; border: 5px solid red; font-size: 30px;} QPushButton:disabled {color: cyan;}"_s;
}

} // namespace

// A page that counts how often a style asks for its sheet, which it does to polish what is in it.
class AskedPage : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString styleSheet READ askedSheet WRITE setStyleSheet)

public:
    QString askedSheet() const
    {
        ++m_asked;
        return styleSheet();
    }
    int takeAsked() { return std::exchange(m_asked, 0); }

private:
    mutable int m_asked = 0;
};

class tst_KeyButton : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        QApplication::setFont(m_font);
        KeyFace::forgetAll();
    }

    void a_release_sends_before_the_key_is_painted()
    {
        Page page(new KeyButton(u"Gain"_s));
        auto* key = qobject_cast<KeyButton*>(page.button);
        key->setSheet(keyStyle::enabled(false));
        page.box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page.box));
        QCoreApplication::processEvents();
        int paints = 0;
        const EventCounter counter(key, QEvent::Paint, paints);
        QStringList signalsSeen;
        int paintsBefore = -1;
        bool couldBePainted = false;
        connect(key, &QPushButton::pressed, this, [&] { signalsSeen += u"pressed"_s; });
        connect(key, &QPushButton::released, this, [&] { signalsSeen += u"released"_s; });
        connect(key, &QPushButton::clicked, this, [&] {
            signalsSeen += u"clicked"_s;
            paintsBefore = paints;
            couldBePainted = key->updatesEnabled();
            QCoreApplication::processEvents(); // as an editor does
        });
        const QPoint middle = key->geometry().center();
        QTest::mousePress(page.box.windowHandle(), Qt::LeftButton, {}, middle);
        QCoreApplication::processEvents();
        const int whilePressed = paints;
        QVERIFY(whilePressed > 0);
        QTest::mouseRelease(page.box.windowHandle(), Qt::LeftButton, {}, middle);
        QCOMPARE(signalsSeen, (QStringList{u"pressed"_s, u"released"_s, u"clicked"_s}));
        QCOMPARE(paintsBefore, whilePressed);
        QVERIFY(couldBePainted);
        QCOMPARE(paints, whilePressed + 1);
        QVERIFY(!key->isDown());
        key->click();
        QVERIFY(key->updatesEnabled());
        key->blockSignals(true);
        key->click();
        QVERIFY(key->updatesEnabled());
    }

    void a_key_on_a_ground_looks_the_same_and_leaves_its_page_alone()
    {
        for (const QString& sheet : {keyStyle::enabled(false), keyStyle::more(), QString()}) {
            Page plain(new KeyButton(u"Gain"_s));
            Page onGround(new KeyButton(u"Gain"_s));
            auto* key = qobject_cast<KeyButton*>(onGround.button);
            key->setGround(Qt::black);
            for (Page* page : {&plain, &onGround}) {
                qobject_cast<KeyButton*>(page->button)->setSheet(sheet);
                page->button->setMarks({keyMarks::Lamp::On, true});
                page->box.show();
                QVERIFY(QTest::qWaitForWindowExposed(&page->box));
            }
            QVERIFY(picture(onGround.box) == picture(plain.box));
            QCoreApplication::processEvents();
            int pagePaints = 0;
            int keyPaints = 0;
            const EventCounter pageCounter(&onGround.box, QEvent::Paint, pagePaints);
            const EventCounter keyCounter(key, QEvent::Paint, keyPaints);
            key->update();
            QTRY_COMPARE(keyPaints, 1);
            QCOMPARE(pagePaints, 0);
        }
    }

    void it_looks_as_the_style_paints_its_sheet_data()
    {
        QTest::addColumn<QString>("sheet");
        const QList<std::pair<const char*, QString>> sheets{{"grey", keyStyle::enabled(false)},
            {"green", keyStyle::toggled(false)}, {"dark", keyStyle::disabled(false)},
            {"large grey", keyStyle::enabled(true)}, {"large green", keyStyle::toggled(true)},
            {"large dark", keyStyle::disabled(true)}, {"any other", otherSheet()},
            {"none", QString()}};
        for (const auto& [name, sheet] : sheets) {
            QTest::newRow(name) << sheet;
        }
    }
    void it_looks_as_the_style_paints_its_sheet()
    {
        QFETCH(QString, sheet);
        const QStringList texts{u""_s, u"Gain"_s, u"Gain && level\n12 dB"_s, u"a & b"_s,
            u"Intermediate frequency of the second demodulator"_s,
            u"A text that is longer than five lines of a key can take, whatever the letters are, "
            "unless they shrink"_s};
        const QList<keyMarks::Marks> marks{
            {}, {keyMarks::Lamp::On, false}, {keyMarks::Lamp::Off, true}};
        for (const QString& text : texts) {
            for (const auto& mark : marks) {
                for (const int state : {0, 1, 2}) {
                    Page ours(new KeyButton(text));
                    qobject_cast<KeyButton*>(ours.button)->setSheet(sheet);
                    Page styled(styledButton(text, sheet));
                    for (Page* page : {&ours, &styled}) {
                        page->button->setMarks(mark);
                        page->button->setEnabled(state != 1);
                        page->button->setDown(state == 2);
                    }
                    QVERIFY2(picture(ours.box) == picture(styled.box), qPrintable(text));
                }
            }
        }
    }

    void it_asks_for_the_size_that_the_style_makes_of_its_sheet()
    {
        for (const QString& sheet :
            {keyStyle::enabled(false), keyStyle::enabled(true), otherSheet(), QString()}) {
            for (const QString& text : {u""_s, u"Gain"_s, u"Gain\n12 dB\n\n"_s, u"a && b"_s,
                     u"Intermediate frequency of the second demodulator"_s}) {
                Page ours(new KeyButton(text));
                qobject_cast<KeyButton*>(ours.button)->setSheet(sheet);
                Page styled(styledButton(text, sheet));
                QCOMPARE(ours.button->sizeHint(), styled.button->sizeHint());
                QCOMPARE(ours.button->minimumSizeHint(), styled.button->minimumSizeHint());
            }
        }
    }

    void styleSheet_answers_the_sheet_at_any_time()
    {
        Page page(new KeyButton(u"Gain"_s));
        auto* key = qobject_cast<KeyButton*>(page.button);
        const QWidget* widget = key;
        const QPushButton* button = key;
        for (const bool isShown : {false, true, false}) {
            page.box.setVisible(isShown);
            for (const QString& sheet : {keyStyle::enabled(false), keyStyle::toggled(false)}) {
                key->setSheet(sheet);
                QCOMPARE(widget->styleSheet(), sheet);
                QCOMPARE(button->styleSheet(), sheet);
                QCoreApplication::processEvents();
                QCOMPARE(widget->styleSheet(), sheet);
            }
        }
    }

    void a_new_sheet_is_not_given_to_the_style_data()
    {
        QTest::addColumn<bool>("wasShown");
        QTest::addColumn<bool>("isShown");
        QTest::newRow("never shown, \"CK\" only") << false << false;
        QTest::newRow("shown once") << true << false;
        QTest::newRow("shown") << true << true;
    }
    void a_new_sheet_is_not_given_to_the_style()
    {
        QFETCH(bool, wasShown);
        QFETCH(bool, isShown);
        QWidget window;
        auto* page = new AskedPage;
        page->setParent(&window);
        page->setStyleSheet(u"QGroupBox {background-color: black;}"_s);
        auto* key = new KeyButton(u"Gain"_s, page);
        key->setSheet(keyStyle::enabled(true));
        key->show();
        window.setVisible(wasShown);
        window.setVisible(isShown);
        page->takeAsked();
        const Qt::WindowFlags flags = key->windowFlags();
        const bool isStyled = key->testAttribute(Qt::WA_StyleSheet);
        key->setSheet(keyStyle::toggled(true)); // with the same font
        QCOMPARE(page->takeAsked(), 0);
        QCOMPARE(key->styleSheet(), keyStyle::toggled(true));
        QCOMPARE(key->windowFlags(), flags);
        QCOMPARE(key->testAttribute(Qt::WA_StyleSheet), isStyled);
        QCOMPARE(key->isVisible(), isShown);
        QVERIFY(!key->isHidden());
        key->setSheet(otherSheet());
        QCOMPARE(key->font().pixelSize() == 30, wasShown);
        window.show();
        QCOMPARE(key->font().pixelSize(), 30);
        page->takeAsked();
        key->setStyleSheet(keyStyle::enabled(true)); // as of any widget
        QVERIFY(page->takeAsked() > 0);
    }

    void a_key_that_is_disabled_unseen_or_while_pressed_is_released()
    {
        Page page(new KeyButton(u"Gain"_s));
        auto* key = qobject_cast<KeyButton*>(page.button);
        key->setSheet(keyStyle::enabled(false));
        page.box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page.box));
        for (const bool isSeen : {true, false}) {
            page.box.setVisible(isSeen);
            key->setEnabled(true);
            key->setDown(true);
            key->setEnabled(false);
            QVERIFY(!key->isDown());
            QVERIFY(!key->isEnabled());
        }
    }

    void a_sheet_set_as_of_any_widget_is_shown()
    {
        Page ours(new KeyButton(u"Gain"_s));
        qobject_cast<KeyButton*>(ours.button)->setSheet(keyStyle::enabled(false));
        ours.box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&ours.box));
        const QSize before = ours.button->sizeHint();
        ours.button->setStyleSheet(otherSheet());
        Page styled(styledButton(u"Gain"_s, otherSheet()));
        QVERIFY(picture(ours.box) == picture(styled.box));
        QCOMPARE(ours.button->font().pixelSize(), 30);
        QVERIFY(ours.button->sizeHint() != before);
    }

    void it_moves_to_a_page_of_another_style_and_back()
    {
        Page ours(new KeyButton(u"Gain"_s));
        qobject_cast<KeyButton*>(ours.button)->setSheet(keyStyle::enabled(false));
        const QImage before = picture(ours.box);
        QWidget bare;
        for (QWidget* parent : {&bare, static_cast<QWidget*>(&ours.box)}) {
            ours.button->setParent(parent);
            ours.button->show();
            QCOMPARE(ours.button->styleSheet(), keyStyle::enabled(false));
        }
        QVERIFY(picture(ours.box) == before);
    }

    void it_is_not_polished_before_it_is_shown()
    {
        Page page(new KeyButton(u"Gain"_s));
        qobject_cast<KeyButton*>(page.button)->setSheet(keyStyle::enabled(true));
        QCoreApplication::processEvents();
        QVERIFY(page.button->font().pixelSize() != 22);
        page.button->hide();
        page.button->show();
        QVERIFY(!page.button->isHidden());
        QVERIFY(page.button->font().pixelSize() != 22);
        page.box.show();
        QCOMPARE(page.button->font().pixelSize(), 22);
    }

    void a_picture_of_a_page_that_was_never_shown_is_right()
    {
        Page ours(new KeyButton(u"Gain"_s));
        qobject_cast<KeyButton*>(ours.button)->setSheet(keyStyle::enabled(true));
        ours.button->show();
        Page styled(styledButton(u"Gain"_s, keyStyle::enabled(true)));
        QVERIFY(picture(ours.box) == picture(styled.box));
    }

    void a_change_of_the_sheet_does_not_lay_out_the_page()
    {
        QWidget page;
        page.setStyleSheet(u"QGroupBox {color: red;}"_s);
        auto* grid = new QGridLayout(&page);
        auto* button = new KeyButton(u"Gain"_s);
        grid->addWidget(button);
        button->setSheet(keyStyle::enabled(false));
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        QCoreApplication::processEvents();
        int requests = 0;
        const EventCounter counter(&page, QEvent::LayoutRequest, requests);
        button->setSheet(keyStyle::toggled(false));
        QCoreApplication::processEvents();
        QCOMPARE(requests, 0);
        button->setSheet(otherSheet());
        QCoreApplication::processEvents();
        QVERIFY(requests > 0);
    }

    void it_follows_the_font_of_the_application()
    {
        Page ours(new KeyButton(u"Gain"_s));
        qobject_cast<KeyButton*>(ours.button)->setSheet(keyStyle::enabled(false));
        const QImage before = picture(ours.box);
        QFont other = QApplication::font();
        other.setFamily(u"DejaVu Sans Mono"_s);
        QApplication::setFont(other);
        QEvent change(QEvent::ApplicationFontChange); // comes to all widgets while the panel runs
        QCoreApplication::sendEvent(ours.button, &change);
        Page styled(styledButton(u"Gain"_s, keyStyle::enabled(false)));
        const QImage after = picture(ours.box);
        QVERIFY(after == picture(styled.box));
        QVERIFY(after != before);
    }

    void faces_leave_no_widgets_behind()
    {
        Page page(new KeyButton(u"Gain"_s));
        const auto widgets = QApplication::allWidgets().size();
        qobject_cast<KeyButton*>(page.button)->setSheet(otherSheet());
        picture(page.box);
        QCOMPARE(QApplication::allWidgets().size(), widgets);
    }

    void pictures_of_faces_take_a_bounded_amount_of_memory()
    {
        Page page(new KeyButton(u""_s));
        qobject_cast<KeyButton*>(page.button)->setSheet(keyStyle::enabled(false));
        picture(page.box);
        const qsizetype before = heapInUse();
        for (int width = 50; width < 150; ++width) {
            page.button->resize(width, 100); // 4 MB together
            picture(page.box);
        }
        QVERIFY(heapInUse() - before < KeyFace::MaxPictureBytes * 3 / 2);
    }

    void sheets_without_end_take_a_bounded_amount_of_memory()
    {
        Page page(new KeyButton(u""_s));
        auto* key = qobject_cast<KeyButton*>(page.button);
        const auto show = [&](int width) {
            key->setSheet(u"QPushButton {border-width: %1px;}"_s.arg(width));
            key->sizeHint();
        };
        for (int width = 0; width < 100; ++width) {
            show(width);
        }
        const qsizetype before = heapInUse();
        for (int width = 100; width < 300; ++width) {
            show(width);
        }
        QVERIFY(heapInUse() - before < 64 * 1024);
    }

private:
    // Counts the events of one type that reach a widget.
    class EventCounter : public QObject
    {
    public:
        EventCounter(QWidget* watched, QEvent::Type type, int& count)
            : m_type(type)
            , m_count(count)
        {
            watched->installEventFilter(this);
        }

    protected:
        bool eventFilter(QObject* /*watched*/, QEvent* event) override
        {
            m_count += event->type() == m_type ? 1 : 0;
            return false;
        }

    private:
        QEvent::Type m_type;
        int& m_count;
    };

    QFont m_font = QApplication::font();
};

QN740_TEST_MAIN(tst_KeyButton)
#include "tst_KeyButton.moc"
