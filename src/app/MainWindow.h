#pragma once

#include <QMainWindow>
#include <QSerialPort>
#include <QStringList>
#include <QVector>

#include <memory>

class Dispatcher;
class QGridLayout;
class SplashScreen;
class StatusBar;
struct Rooms;

/// The frame of the panel, 800 × 480: the menu area (a stack of pages) and the status bar under it.
///
/// It is the one place where a message of the main unit ends up: every command word has its slot
/// here, and each slot is one call of the class that carries out the messages of its room. A
/// message in: keySerial cuts a message out of the line, process_mess() has the dispatcher look its
/// word up, the word's slot gets the remaining fields. A message out: whoever has one emits it, and
/// it comes to send_mess(), which widens it for the link mode and writes it.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Builds the panel and opens the line to the main unit and the scope ports.
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    void Set_Status_Bar(); ///< Builds the status bar; called by the constructor.
    void setup_scopes();   ///< Builds the scopes page and opens the re-send line; called likewise.
    void setUpSpectrum();  ///< Builds the spectrum page, if it is not there yet.
    void get_settings();   ///< Reads the stored link mode, 0 when there is none.
    void put_settings();   ///< Stores the link mode.

    /// Shows a message box that does not block: with an "OK" button, or with no button at all, so
    /// that only killbox() closes it. \param text rich text
    void main_messagebox(const QString& text, bool okButton);

    /// \return whether any demodulator's scope port is open.
    bool scope_available() const;
    /// Sets the colour of a scope's lines. \param color a number of "LC" \param trace 0 to 2 for
    /// the scope of Demod 1 to 3; others: none
    void setScopeLineColor(int color, int trace);

    /// Puts the first spectrum chart into \a place, at (1, 0), and hides the two others.
    void lendChart(QGridLayout* place);
    /// Takes the chart back, at any time.
    void returnChart();

    /// Refuses the request: the window cannot be closed.
    void closeEvent(QCloseEvent* event) override;

    /// \return the index of the main menu's page in the stack, -1 until there was one.
    int mainMenuIndex() const;
    /// \return the index of the PAX main menu's page in the stack, -1 until there was one.
    int paxMenuIndex() const;
    /// \return whether a scope or spectrum display occupies the menu area.
    bool displayActive() const;
    /// \return whether the constructor has come to its end.
    bool isReady() const { return m_ready; }
    /// \return the objects that carry out what comes to the slots, for tests and tools.
    const Rooms& rooms() const { return *m_rooms; }

public slots:
    /// Carries out a message of the main unit. \param message with its frame characters
    void process_mess(const QString& message);
    /// Sends a message to the main unit. \param message with its frame characters
    void send_mess(const QString& message);

    /// Carries out the message of a command word. \param fields what follows the word
    ///@{
    void process_PING(const QStringList& fields);
    void process_VER(const QStringList& fields);
    void process_slave(const QStringList& fields);
    void process_SB_key(const QStringList& fields);
    void process_DB_key(const QStringList& fields);
    void process_AK_key(const QStringList& fields);
    void process_SK_key(const QStringList& fields);
    void process_CK_key(const QStringList& fields);
    void process_CV_key(const QStringList& fields);
    void process_CM_key(const QStringList& fields); // has no command word
    void process_MM_key(const QStringList& fields); // "CM"
    void process_MM_key_PAX(const QStringList& fields);
    void process_PAX(const QStringList& fields);
    void process_EI_key(const QStringList& fields);
    void process_IK_key(const QStringList& fields);
    void process_CLEAR(const QStringList& fields);
    void process_SM(const QStringList& fields);
    void process_SQ(const QStringList& fields);
    void process_PM(const QStringList& fields);
    void process_SF_key(const QStringList& fields);
    void process_SP_key(const QStringList& fields);
    void process_SH(const QStringList& fields);
    void process_LC(const QStringList& fields);
    void process_HM_key(const QStringList& fields);
    void process_ST(const QStringList& fields);
    ///@}

    void process_config_menu(); ///< Opens the dialog of link modes.
    void master_tog(bool on);   ///< Chooses "No Linking". \param on false: nothing
    void div_tog(bool on);      ///< Chooses diversity linking. \param on false: nothing
    void freq_tog(bool on);     ///< Chooses frequency diversity linking. \param on false: nothing
    void enableStatBut1();      ///< Enables the button "Linking", when the dialog is closed.

    void process_special_menu(); ///< Shows the menu "Main" with its keys in groups.
    void goto_main_menu();       ///< Shows the main menu and tells the main unit.
    void paxMenuEnable(bool on); ///< Shows the PAX main menu, or takes its displays back.
    void menus_scopes_toggle();  ///< Shows the next view.
    void button_pushed();        ///< Shows a diagnostic box until it is closed.

    void togglePlotType_ch1();  ///< Opens the list of scope modes of Demod 1.
    void togglePlotType_ch2();  ///< Opens the list of scope modes of Demod 2.
    void togglePlotType_comb(); ///< Opens the list of scope modes of Demod 3.
    void spanClicked();         ///< Opens the list of spans.
    /// Sets the scope mode that was chosen from the list. \param choice empty: cancelled
    void applyScopeChoice(int demodulator, const QString& choice);

    /// Notes a block of samples, in parts of full scale, of the scope of Demod 1, 2 or 3.
    ///@{
    void eye_1_msg(const QVector<double>& i, const QVector<double>& q);
    void eye_2_msg(const QVector<double>& i, const QVector<double>& q);
    void eye_3_msg(const QVector<double>& i, const QVector<double>& q);
    ///@}
    /// Notes an SDI record of five bytes of the scope of Demod 1, 2 or 3.
    ///@{
    void sdi_1_msg(const QByteArray& record);
    void sdi_2_msg(const QByteArray& record);
    void sdi_3_msg(const QByteArray& record);
    ///@}

    /// Passes a message that has come in on the re-send line on to the main unit.
    void send_scope_mess(const QString& message);
    void scope_resend_read(); ///< Reads what has come in on the re-send line.
    /// Closes the re-send line after an error.
    void scope_resend_error(QSerialPort::SerialPortError error);

signals:
    /// Emitted to close the message boxes that main_messagebox() has opened.
    void killbox();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void setUpLook();

    std::unique_ptr<Dispatcher> m_dispatcher;
    std::unique_ptr<SplashScreen> m_splash;
    std::unique_ptr<Rooms> m_rooms;
    StatusBar* m_statusBar = nullptr;
    bool m_ready = false;
};
