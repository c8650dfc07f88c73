// A finger presses its way through every editor and box on a screen without a window manager, where
// the platform alone stacks the windows and gives each touch to the one on top.
//
// The window is in the test's process, so that the test knows where each key is and whether it was
// pressed. The touches come from outside, by the remote screen of the platform "vnc". Screen, scale
// and rotation are read from the environment, as by the panel: each is a run of its own.
#include "app/Identity.h"
#include "app/Rooms.h"
#include "app/ScreenSettings.h"
#include "app/Stage.h"
#include "app/StageMap.h"
#include "app/Views.h"
#include "link/LinkControl.h"
#include "link/LinkModeDialog.h"
#include "menus/Key.h"
#include "menus/MenuMessages.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumMessages.h"
#include "support/PopUps.h"
#include "support/RfbClient.h"
#include "support/UnitFixture.h"
#include "tools/screen/Part.h"
#include "touch/Placement.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

constexpr int WaitMs = 10000;

quint16 g_port = 0;
std::unique_ptr<Stage> g_stage;
int g_rotation = 0;

// The pixels of the screen as it is mounted.
QImage screenPicture()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

// Where the screen shows a point of the panel.
QPoint pixelOf(QPoint global)
{
    const qreal ratio = qApp->devicePixelRatio();
    const QSize screen = QGuiApplication::primaryScreen()->size() * ratio;
    const StageMap map(screen, ScreenSettings::PanelSize * ratio, g_rotation);
    const QPoint corner = g_stage != nullptr ? g_stage->panelArea().topLeft() : QPoint();
    const QPoint point = ((global - corner) * ratio);
    return map.toScreen(QRect(point, QSize(1, 1))).topLeft();
}

// Touches the screen from outside. It never waits: the other end is in this process.
class Finger
{
public:
    Finger()
    {
        QObject::connect(&m_socket, &QTcpSocket::readyRead, &m_socket, [this] { answer(); });
        m_socket.connectToHost(u"127.0.0.1"_s, g_port);
    }

    bool isReady() const { return m_step == 3; }
    void down(QPoint global) { point(global, 1); }
    void up(QPoint global) { point(global, 0); }

private:
    // The handshake of RFB 3.3 without authentication.
    void answer()
    {
        const QByteArray replies[] = {"RFB 003.003\n", "\x01", ""};
        const qint64 lengths[] = {12, 4, 24};
        while (m_step < 3 && m_socket.bytesAvailable() >= lengths[m_step]) {
            m_socket.read(lengths[m_step]);
            m_socket.write(replies[m_step]);
            ++m_step;
        }
    }

    void point(QPoint global, char buttons)
    {
        const QPoint pixel = pixelOf(global);
        QByteArray message(6, '\0');
        message[0] = 5;
        message[1] = buttons;
        qToBigEndian(static_cast<quint16>(pixel.x()), message.data() + 2);
        qToBigEndian(static_cast<quint16>(pixel.y()), message.data() + 4);
        m_socket.write(message);
        m_socket.flush();
    }

    QTcpSocket m_socket;
    int m_step = 0;
};

QPoint middle(const QWidget* widget)
{
    return widget->mapToGlobal(widget->rect().center());
}

} // namespace

class tst_BareScreen : public QObject, private UnitFixture
{
    Q_OBJECT

    std::unique_ptr<Finger> m_finger;

    void touch(QPoint global) const
    {
        m_finger->down(global);
        m_finger->up(global);
    }

    // Touches a button and waits until it was clicked. The editor may be closed and gone then.
    void press(QAbstractButton* button) const
    {
        QVERIFY(button != nullptr && button->isVisible());
        bool clicked = false;
        const auto connection =
            connect(button, &QAbstractButton::clicked, this, [&clicked] { clicked = true; });
        // The test's own connection comes last, so whatever the button does is done then.
        touch(middle(button));
        QTRY_VERIFY_WITH_TIMEOUT(clicked, WaitMs);
        disconnect(connection);
    }

    void press(const QWidget* editor, const QString& text) const
    {
        QPushButton* button = buttonWithText(editor, text);
        QVERIFY2(button != nullptr, qPrintable(text));
        press(button);
    }

    void press(const QWidget* editor, const QStringList& texts) const
    {
        for (const QString& text : texts) {
            press(editor, text);
        }
    }

    // Whether the screen shows a widget as it has painted itself: nothing is over it. With a scale
    // that is no whole number its place may be a pixel off.
    static bool isSeen(QWidget* widget)
    {
        const QPixmap window = widget->window()->grab();
        const qreal ratio = window.devicePixelRatio();
        constexpr int Rim = 2;
        const QRect inside(QPoint(Rim, Rim), widget->size() * ratio - 2 * QSize(Rim, Rim));
        const QPoint corner = widget->mapTo(widget->window(), QPoint()) * ratio;
        const QImage painted =
            window.toImage().copy(inside.translated(corner)).convertToFormat(QImage::Format_RGB32);
        QTransform back;
        back.rotate(-g_rotation);
        const QImage screen = screenPicture().transformed(back).convertToFormat(painted.format());
        const QPoint place =
            back.mapRect(QRect(pixelOf(widget->mapToGlobal(QPoint())), QSize(1, 1))).topLeft() -
            back.mapRect(screenPicture().rect()).topLeft();
        for (int x = -1; x <= 1; ++x) {
            for (int y = -1; y <= 1; ++y) {
                if (screen.copy(inside.translated(place + QPoint(x, y))) == painted) {
                    return true;
                }
            }
        }
        return false;
    }

    // What every editor and box has to show: its title is seen, and it is in the middle.
    static void checkTop(QWidget* editor)
    {
        auto* title = editor->findChild<QLabel*>(u"titleLabel"_s);
        if (!editor->windowTitle().isEmpty()) {
            QVERIFY(title != nullptr && !title->text().isEmpty());
        }
        if (title != nullptr) {
            QTRY_VERIFY_WITH_TIMEOUT(isSeen(title), WaitMs);
        }
        const QRect panel = touch::panelArea(editor);
        QVERIFY(panel.contains(editor->geometry()));
        const QPoint off = editor->geometry().center() - panel.center();
        QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
    }

    // Does `then` with the modal window that `open` brings up, and waits until it has gone.
    static void within(const std::function<void()>& open, const std::function<void(QWidget*)>& then)
    {
        bool done = false;
        whenModal([&](QWidget* editor) {
            const QPointer<QWidget> guard(editor);
            checkTop(editor);
            // The activation of a message that stands above an editor is its own.
            QTRY_VERIFY_WITH_TIMEOUT(messageBox() != nullptr || editor->isActiveWindow(), WaitMs);
            then(editor);
            QTRY_VERIFY_WITH_TIMEOUT(guard == nullptr || !guard->isVisible(), WaitMs);
            done = true;
        });
        open();
        QTRY_VERIFY_WITH_TIMEOUT(done, WaitMs);
    }

    // The button of a key, whose menu is on the screen then.
    QPushButton* keyButton(const char* menu, const char* id)
    {
        say(QByteArray("SK,") + menu);
        const Key* key = MenuBook::findKey(
            m_window->rooms().menus->book.find(QString::fromUtf8(menu)), QString::fromUtf8(id));
        return key != nullptr ? key->GetKey() : nullptr;
    }

    void edit(const char* menu, const char* id, const std::function<void(QWidget*)>& then)
    {
        QPushButton* button = keyButton(menu, id);
        QVERIFY(button != nullptr);
        within([&] { press(button); }, then);
    }

    bool hasSent(const char* body) const
    {
        return QTest::qWaitFor(
            [&] { return m_unit->output().contains(QByteArray("panel: ") + body + '\n'); }, WaitMs);
    }

private slots:
    void initTestCase()
    {
        start(QString::fromUtf8(QN740_SIM), {});
        m_finger = std::make_unique<Finger>();
        QTRY_VERIFY_WITH_TIMEOUT(m_finger->isReady(), WaitMs);
        QTRY_VERIFY_WITH_TIMEOUT(m_window->isActiveWindow(), WaitMs);
    }

    void init() { say("SK,Start"); }

    void cleanup() { QCOMPARE(QApplication::activeModalWidget(), nullptr); }

    void cleanupTestCase()
    {
        m_finger.reset();
        stop();
    }

    void the_panel_is_in_the_middle()
    {
        const QSize screen = QGuiApplication::primaryScreen()->size();
        const QSize seen = g_rotation % 180 == 0 ? screen : screen.transposed();
        QCOMPARE(m_window->size(), ScreenSettings::PanelSize);
        QVERIFY(seen.width() - 800 < 1 || g_stage != nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(part<QPushButton>(*m_window, "mainMenuButton")), WaitMs);
    }

    void each_pad_opens_on_top_and_is_left_by_its_key_data()
    {
        QTest::addColumn<QByteArray>("menu");
        QTest::addColumn<QByteArray>("id");
        const auto row = [](const char* menu, const char* id) {
            QTest::addRow("%s, %s", menu, id) << QByteArray(menu) << QByteArray(id);
        };
        row("Tuner CH1", "offset");
        row("Demod 1", "rate");
        row("Demod 1", "loop");
        row("Tuner CH1", "phase");
        row("Demod 1", "roll");
        row("Demod 1", "sweep");
        row("System", "pin");
        row("Demod 1", "sync");
        row("System", "ip");
    }

    void each_pad_opens_on_top_and_is_left_by_its_key()
    {
        QFETCH(QByteArray, menu);
        QFETCH(QByteArray, id);
        edit(menu.constData(), id.constData(), [this](QWidget* pad) {
            const QPointer<QWidget> open(pad);
            press(pad, {u"1"_s, u"CE/Cancel"_s});
            while (open != nullptr && open->isVisible() && !QTest::currentTestFailed()) {
                press(pad, u"CE/Cancel"_s);
            }
        });
    }

    void a_wrong_frequency_is_refused_over_its_pad_and_a_right_one_sent()
    {
        edit("Tuner CH1", "freq", [this](QWidget* pad) {
            press(pad, {u"9"_s, u"9"_s});
            within([&] { press(pad, u"MHz"_s); }, [this](QWidget* box) { press(box, u"OK"_s); });
            QTRY_VERIFY_WITH_TIMEOUT(pad->isActiveWindow(), WaitMs);
            press(pad, {u"3"_s, u"0"_s, u"0"_s, u"MHz"_s});
        });
        QVERIFY(hasSent("R1:FREQ:300.000000"));
    }

    void an_incomplete_address_is_refused_over_its_pad()
    {
        edit("System", "ip", [this](QWidget* pad) {
            const auto* current = pad->findChild<QLabel*>(u"currentValueLabel"_s);
            QCOMPARE(current->text(), pad->windowTitle());
            press(pad, {u"1"_s, u"."_s, u"2"_s});
            within([&] { press(pad, u"Enter"_s); }, [this](QWidget* box) { press(box, u"OK"_s); });
            press(pad, {u"CE/Cancel"_s, u"CE/Cancel"_s});
        });
    }

    void a_key_of_a_slider_repeats_while_it_is_held()
    {
        edit("Tuner CH1", "squelch", [this](QWidget* slider) {
            auto* readout = slider->findChild<QLabel*>(u"readoutLabel"_s);
            QCOMPARE(readout->text(), u"35.00%"_s);
            const QPoint up = middle(buttonWithText(slider, u"UP"_s));
            m_finger->down(up);
            QTRY_COMPARE_WITH_TIMEOUT(readout->text(), u"37.00%"_s, WaitMs);
            m_finger->up(up);
            press(slider, u"OK"_s);
        });
        QVERIFY(hasSent("R1:SQL:36"));
        edit("Tuner CH1", "gain", [this](QWidget* slider) {
            press(slider, {u"+10 >"_s, u"OK"_s});
        });
        QVERIFY(hasSent("R1:GAIN:34"));
    }

    void a_choice_is_sent_and_a_long_list_is_left()
    {
        edit("Combiner", "mode", [this](QWidget* list) { press(list, u"Pre-det"_s); });
        QVERIFY(hasSent("C1:MODE:1"));
        edit("Demod 3", "mod", [this](QWidget* list) { press(list, u"Cancel"_s); });
    }

    void a_file_name_is_cancelled_and_then_typed()
    {
        edit("System", "save", [this](QWidget* board) {
            const auto newFile = [this, board] { press(board, u"New File"_s); };
            within(newFile, [this](QWidget* name) {
                press(name, {u"x"_s, u"y"_s});
                QPushButton* cancel = buttonWithText(name, u"Cancel"_s);
                QVERIFY(cancel->height() >= 47 && cancel->width() >= 47);
                press(cancel);
            });
            QTRY_VERIFY_WITH_TIMEOUT(board->isActiveWindow(), WaitMs);
            within(newFile, [this](QWidget* name) {
                auto* field = name->findChild<QLineEdit*>();
                press(name, {u"n"_s, u"7"_s});
                QVERIFY(field->hasFocus());
                QCOMPARE(field->text(), u"n7"_s);
                press(name, u"RETURN"_s);
            });
        });
        QVERIFY(hasSent("SYS:SAVE:n7"));
    }

    void the_link_mode_is_chosen_beside_the_panel()
    {
        press(part<QPushButton>(*m_window, "linkButton"));
        const QPointer<LinkModeDialog> dialog = m_window->findChild<LinkModeDialog*>();
        QVERIFY(dialog != nullptr);
        checkTop(dialog);
        touch(middle(dialog->findChild<QRadioButton*>(u"diversityLinking"_s)));
        QVERIFY(hasSent("Slave,1"));
        touch(middle(dialog->findChild<QRadioButton*>(u"noLinking"_s)));
        QVERIFY(hasSent("Slave,0"));
        touch(middle(dialog->findChild<QPushButton*>(u"closeButton"_s)));
        QTRY_VERIFY_WITH_TIMEOUT(dialog == nullptr, WaitMs);
    }

    void a_message_is_above_an_editor_and_one_without_a_key_steps_aside()
    {
        say("DB,Look at the antenna,1");
        edit("Tuner CH1", "offset", [this](QWidget* pad) {
            const QPointer<QWidget> box = messageBox();
            QVERIFY(box != nullptr);
            press(box, u"OK"_s); // above the pad that was opened after it
            QTRY_VERIFY_WITH_TIMEOUT(box == nullptr, WaitMs);
            press(pad, u"5"_s);

            say("DB,Please wait");
            const QPointer<QWidget> waiting = messageBox();
            QTRY_VERIFY_WITH_TIMEOUT(waiting != nullptr, WaitMs);
            QPushButton* covered = buttonWithText(pad, u"5"_s);
            QTRY_VERIFY_WITH_TIMEOUT(!isSeen(covered), WaitMs);
            touch(middle(waiting));
            QTRY_VERIFY_WITH_TIMEOUT(isSeen(covered), WaitMs);
            press(pad, {u"5"_s, u"CE/Cancel"_s, u"CE/Cancel"_s});
        });
        say("DB,KILLBOX");
        QTRY_VERIFY_WITH_TIMEOUT(messageBox() == nullptr, WaitMs);
    }

    void a_scope_mode_is_chosen_from_its_list()
    {
        press(part<QPushButton>(*m_window, "scopesButton"));
        auto* mode = part<QPushButton>(*m_window, "modeButton1");
        QTRY_VERIFY_WITH_TIMEOUT(mode->isVisible(), WaitMs);
        within([&] { press(mode); }, [this](QWidget* list) { press(list, u"Constellation"_s); });
        QTRY_COMPARE_WITH_TIMEOUT(mode->text(), u"Demod 1 Constellation"_s, WaitMs);
        press(part<QPushButton>(*m_window, "mainMenuButton"));
    }

    void a_span_is_chosen_from_its_list()
    {
        say("ST,1");
        for (int i = 0; i < 3 && m_window->rooms().views->current() != Views::Spectrum; ++i) {
            press(part<QPushButton>(*m_window, "scopesButton"));
        }
        QComboBox* span = nullptr;
        const auto boxes = m_window->findChildren<QComboBox*>();
        for (QComboBox* box : boxes) {
            span = span == nullptr && box->isVisible() ? box : span;
        }
        QVERIFY(span != nullptr);
        touch(middle(span));
        QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() != nullptr, WaitMs);
        QWidget* list = QApplication::activePopupWidget();
        QVERIFY(touch::panelArea(list).contains(list->geometry()));
        const auto* view = span->view();
        QVERIFY(view->isVisible());
        const QModelIndex other = view->model()->index(2, 0);
        QTest::qWait(QApplication::doubleClickInterval() + 1); // too soon, it is no choice
        touch(view->viewport()->mapToGlobal(view->visualRect(other).center()));
        QTRY_COMPARE_WITH_TIMEOUT(span->currentIndex(), 2, WaitMs);
        QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget() == nullptr, WaitMs);
        press(part<QPushButton>(*m_window, "mainMenuButton"));
    }

private:
    static QWidget* messageBox()
    {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->objectName() == u"messageBox"_s) {
                return window;
            }
        }
        return nullptr;
    }
};

int main(int argc, char** argv)
{
    const auto text = [](const char* name, const char* otherwise) {
        return qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray(otherwise);
    };
    g_port = RfbClient::freePort();
    qputenv("QT_QPA_PLATFORM",
        "vnc:size=" + text("QN740_TEST_SCREEN", "800x480") + ":port=" + QByteArray::number(g_port));
    qputenv("QN740_SPLASH_MS", "0");
    const ScreenSettings settings = ScreenSettings::fromEnvironment();
    settings.apply(argc, argv);
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    QApplication::setQuitOnLastWindowClosed(false);
    g_rotation = settings.rotation();
    g_stage = Stage::create(g_rotation);
    QApplication::setDoubleClickInterval(20);
    tst_BareScreen test;
    const int result = QTest::qExec(&test, argc, argv);
    g_stage.reset();
    return result;
}

#include "tst_BareScreen.moc"
