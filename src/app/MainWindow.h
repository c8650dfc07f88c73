#pragma once

#include "app/Views.h"

#include <QByteArray>
#include <QMainWindow>
#include <QPointer>
#include <QSerialPort>
#include <QSettings>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <memory>

class Dispatcher;
class keySerial;
class KeyBoard;
class LinkModeDialog;
class MainMenus;
class MenuMessages;
class MessageBoxes;
class QGridLayout;
class QLabel;
class QPushButton;
class QStatusBar;
class ScopesPage;
class SerialLine;
class SpectralCard;
class SplashScreen;

// The frame of the panel, 800 × 480: the menu area (a stack of pages) and the status bar under it.
// It creates the rooms, wires them, and is the one place where a message of the main unit ends up:
// every command word has its slot here, and a slot whose work belongs to a room hands it there.
//
// The road of a message in: keySerial cuts it out of the line, process_mess() looks its word up in
// the dispatcher's table, the slot of the word gets the remaining fields. The road out: whoever has
// a finished message hands it to send_mess(), which widens it for the link mode and writes it.
//
// All slots that take a QStringList get the fields behind the command word. What is malformed is
// ignored without a word; nothing is sent back.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    // Builds the status bar: link mode, "Linking", "Main Menu", "Scopes" and the version.
    void Set_Status_Bar();

    // Reads the stored link mode (0 when there is none) and shows it; writes it.
    void get_settings();
    void put_settings();

    // Shows a message box with this text that does not block: with an OK button, or with no button
    // at all, so that only killbox() closes it.
    void main_messagebox(const QString& text, bool okButton);

    // Builds the scopes page with its three scopes and opens the line for re-sent messages.
    void setup_scopes();
    // Out: whether any demodulator's scope port is open.
    bool scope_available() const;
    // color: a number of "LC"; trace: 0 to 2 for the scope of Demod 1 to 3, others: nothing.
    void setScopeLineColor(int color, int trace);

    // Builds the spectrum page, if it is not there yet: with "-noK7150" for a card of the older
    // type on the first of its three ports that opens, otherwise for a K7150 on all three.
    void setUpSpectrum();

    // Puts the first spectrum chart into `place`, at (1, 0), and hides the two others; may be
    // called again while it is there. returnChart() brings everything back; it may be called at any
    // time.
    void lendChart(QGridLayout* place);
    void returnChart();

    // Refuses every request: the window cannot be closed.
    void closeEvent(QCloseEvent* event) override;

    int mainMenuIndex() const { return views->mainMenu.index(); }
    int paxMenuIndex() const { return views->paxMenu.index(); }
    bool displayActive() const { return views->displayActive(); }

    QWidget* central = nullptr;
    QStackedLayout* stack = nullptr;
    Views* views = nullptr;               // which page is shown, and the pages' numbers
    MenuMessages* menus = nullptr;        // the menu pages and the messages that define them
    MainMenus* mainMenus = nullptr;       // the messages that compose the main menus
    int paxMenuListIndex = -1;            // position of the PAX main menu in the list of menus
    ScopesPage* scopes = nullptr;         // the page of the three scopes
    SpectralCard* spectralCard = nullptr; // the spectrum page, nullptr while there is none
    keySerial* serial = nullptr;
    std::unique_ptr<QSettings> settings;
    QStatusBar* statusBar_ = nullptr;
    QLabel* statusLabel = nullptr;
    QPushButton* linkButton = nullptr;
    QPushButton* mainMenuButton = nullptr;
    QPushButton* scopesButton = nullptr;
    QPointer<LinkModeDialog> linkDialog; // while it is open
    int linkMode = 0;                    // 0 none, 1 diversity, 2 frequency diversity
    bool noK7150 = false;                // started with "-noK7150"
    bool spectrumAvailable = false;      // the spectrum page exists
    bool ready = false;                  // the constructor has come to its end
    QTimer timer;

public slots:
    void process_mess(const QString& message);
    // message: framed. Widens it for the link mode and writes it to the line, in one write.
    void send_mess(const QString& message);

    void process_PING(const QStringList& fields);
    void process_VER(const QStringList& fields);

    // keys and menus
    void process_AK_key(const QStringList& fields);
    void process_SK_key(const QStringList& fields);
    void process_CK_key(const QStringList& fields);
    void process_CV_key(const QStringList& fields);
    void process_CM_key(const QStringList& fields); // reached by no command word
    void process_MM_key(const QStringList& fields);
    void process_MM_key_PAX(const QStringList& fields);
    void process_PAX(const QStringList& fields);
    void process_EI_key(const QStringList& fields);
    void process_IK_key(const QStringList& fields);
    void process_CLEAR(const QStringList& fields);
    void process_special_menu();
    void goto_main_menu();
    void paxMenuEnable(bool on);
    void button_pushed();

    // link mode and small messages
    void process_slave(const QStringList& fields);
    void process_config_menu();
    void master_tog(bool on);
    void div_tog(bool on);
    void freq_tog(bool on);
    void enableStatBut1();
    void process_SB_key(const QStringList& fields);
    void process_DB_key(const QStringList& fields);

    // scopes
    void menus_scopes_toggle();
    void process_SM(const QStringList& fields);
    void process_SQ(const QStringList& fields);
    void process_PM(const QStringList& fields);
    // The mode buttons of Demod 1, Demod 2 and Demod 3: open the list of modes.
    void togglePlotType_ch1();
    void togglePlotType_ch2();
    void togglePlotType_comb();
    // choice: what the list of modes answered; empty: cancelled.
    void applyScopeChoice(int demodulator, const QString& choice);
    // What the scopes of Demod 1, 2 and 3 have received.
    void eye_1_msg(const QVector<double>& i, const QVector<double>& q);
    void eye_2_msg(const QVector<double>& i, const QVector<double>& q);
    void eye_3_msg(const QVector<double>& i, const QVector<double>& q);
    void sdi_1_msg(const QByteArray& record);
    void sdi_2_msg(const QByteArray& record);
    void sdi_3_msg(const QByteArray& record);
    // Messages that come in on the re-send line go out to the main unit.
    void send_scope_mess(const QString& message);
    void scope_resend_read();
    void scope_resend_error(QSerialPort::SerialPortError error);

    // spectrum
    void process_SF_key(const QStringList& fields);
    void process_SP_key(const QStringList& fields);
    void process_SH(const QStringList& fields);
    void process_LC(const QStringList& fields);
    void process_HM_key(const QStringList& fields);
    void process_ST(const QStringList& fields);
    void spanClicked();

signals:
    // Closes the message box that main_messagebox() has opened.
    void killbox();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void showSplash();
    void setUpStack();
    void setUpLink();
    void setUpLook();
    void showMenu(KeyBoard* menu);
    // Writes the text as it is, in one write, and logs it.
    void writeToLink(const QString& text);
    void chooseScopeMode(int demodulator);
    void noteBlock(int demodulator, const QVector<double>& i, const QVector<double>& q);
    void noteRecord(int demodulator, const QByteArray& record);
    void setUpMainMenus();
    void returnToMenus(QWidget* page);
    QGridLayout* paxDisplayGrid() const;

    // The PAX main menu is shown: the scope and the first spectrum chart move into `place`, at
    // (0, 0). May be called again while they are there.
    void paxTakesDisplays(QGridLayout* place);
    // They go back to their own pages; also before a PAX main menu is deleted, which would take
    // them along, and when they are there already.
    void paxReturnsDisplays();
    void paxTakesScope(QGridLayout* place);
    void paxReturnsScope();

    void setLinkMode(int mode);
    void chooseLinkMode(int mode);

    QString firstCardPort() const;

    QPushButton* addStatusButton(const char* name, const QString& text, const QString& sheet);

    std::unique_ptr<Dispatcher> m_dispatcher;
    std::unique_ptr<SplashScreen> m_splash;
    SerialLine* m_scopeResend = nullptr;
    QString m_resent; // what came in on the re-send line and has no end yet
    std::unique_ptr<MessageBoxes> m_messageBoxes;
    QList<int> m_chartsBefore; // chart areas that were shown before the first chart was lent
};
