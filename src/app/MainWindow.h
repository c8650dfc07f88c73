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

    /// A part of the constructor: the status bar; the scopes page and the re-send line; the
    /// spectrum page, if it is not there yet; the stored link mode, 0 when there is none.
    ///@{
    void Set_Status_Bar();
    void setup_scopes();
    void setUpSpectrum();
    void get_settings();
    ///@}
    /// Stores the link mode.
    void put_settings();

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

    int mainMenuIndex() const; ///< \return its page's index in the stack, -1 until there was one.
    int paxMenuIndex() const;  ///< \return the same of the PAX main menu.
    /// \return whether a scope or spectrum display occupies the menu area.
    bool displayActive() const;
    /// \return whether the constructor has come to its end.
    bool isReady() const { return m_ready; }
    /// \return the objects that carry out what comes to the slots, for tests and tools.
    const Rooms& rooms() const { return *m_rooms; }

public slots:
    /// A message of the main unit, or to it. \param message with its frame characters
    ///@{
    void process_mess(const QString& message);
    void send_mess(const QString& message);
    ///@}

    /// The message of a command word. \param fields what follows the word
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

    /// The operator's button "Linking", and what is done in the dialog that it opens.
    ///@{
    void process_config_menu();
    void master_tog(bool on);
    void div_tog(bool on);
    void freq_tog(bool on);
    void enableStatBut1();
    ///@}

    /// Shows the regrouped "Main"; the main menu; the PAX main menu; the next view; a diagnostic
    /// box.
    ///@{
    void process_special_menu();
    void goto_main_menu();
    void paxMenuEnable(bool on);
    void menus_scopes_toggle();
    void button_pushed();
    ///@}

    /// Opens the list of scope modes of Demod 1, 2 and 3, or of spans; or takes the answer of the
    /// former. \param choice empty: cancelled
    ///@{
    void togglePlotType_ch1();
    void togglePlotType_ch2();
    void togglePlotType_comb();
    void spanClicked();
    void applyScopeChoice(int demodulator, const QString& choice);
    ///@}

    /// What the scope of Demod 1, 2 or 3 has received: samples in parts of full scale, or five
    /// bytes.
    ///@{
    void eye_1_msg(const QVector<double>& i, const QVector<double>& q);
    void eye_2_msg(const QVector<double>& i, const QVector<double>& q);
    void eye_3_msg(const QVector<double>& i, const QVector<double>& q);
    void sdi_1_msg(const QByteArray& record);
    void sdi_2_msg(const QByteArray& record);
    void sdi_3_msg(const QByteArray& record);
    ///@}

    /// Passes messages that come in on the re-send line on to the main unit.
    ///@{
    void send_scope_mess(const QString& message);
    void scope_resend_read();
    void scope_resend_error(QSerialPort::SerialPortError error);
    ///@}

signals:
    /// Emitted to close the message boxes that main_messagebox() has opened.
    void killbox();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void showSplash();
    void setUpLook();

    std::unique_ptr<Dispatcher> m_dispatcher;
    std::unique_ptr<SplashScreen> m_splash;
    std::unique_ptr<Rooms> m_rooms;
    StatusBar* m_statusBar = nullptr;
    bool m_ready = false;
};
