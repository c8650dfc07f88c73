#include "popups/FileNameEdit.h"

#include "popups/KeyBoardWidget.h"
#include "popups/PopUpDialog.h"
#include "touch/Picture.h"
#include "touch/PopUpStyle.h"
#include "touch/TextButton.h"

#include <QHBoxLayout>

namespace {

constexpr int Margin = 8;
constexpr int FieldHeight = 60;
constexpr int CancelWidth = 120;

QString fieldStyle()
{
    return QStringLiteral("QLineEdit {background-color:white; color:black; font-size: 26px;}");
}

} // namespace

// Q_INIT_RESOURCE must stand in the global namespace. Without it the linker leaves out the pictures
// of the static library.
static void useMyResources()
{
    Q_INIT_RESOURCE(MyResources);
}

FileNameEdit::FileNameEdit(const QString& text, QWidget* parent)
    : QWidget(nullptr)
    , m_dialog(new PopUpDialog(QStringLiteral("FileNameEdit"),
          QStringLiteral("Enter Store File Name"), Qt::WindowFlags(), Margin, this))
    , m_field(new QLineEdit)
{
    useMyResources();
    m_dialog->setWindowIcon(touch::picture(QStringLiteral(":/MyFiles/TORVA-globe.png")));
    m_dialog->setStyleSheet(popUpStyle::filesWindow());
    // In the dialog from the beginning: a style sheet above them makes all keys look up their style
    // again when they come into it later.
    m_keys = new KeyBoardWidget(m_field, true, m_dialog);

    m_field->setStyleSheet(fieldStyle());
    m_field->setFixedHeight(FieldHeight);
    m_field->setText(text);
    // The unit's screen has no window frames, so there is no other way to close the dialog.
    auto* cancel = new TextButton(QStringLiteral("Cancel"), nullptr, TextButton::Shrinking);
    cancel->setStyleSheet(popUpStyle::cancel());
    cancel->setFixedSize(CancelWidth, FieldHeight);
    cancel->setFocusPolicy(Qt::NoFocus);

    auto* line = new QHBoxLayout;
    line->addWidget(m_field);
    line->addWidget(cancel);
    m_dialog->column()->addLayout(line);
    m_dialog->column()->addWidget(m_keys);

    connect(m_keys, &KeyBoardWidget::ret_pushed, m_dialog, &QDialog::accept);
    connect(m_field, &QLineEdit::returnPressed, m_dialog, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, m_dialog, &QDialog::reject);
    connect(m_dialog, &QDialog::rejected, this, &FileNameEdit::fn_can);

    // The parent may be deleted while the dialog is open, and would delete this object too.
    const QPointer<QWidget> later(parent);
    m_field->setFocus();
    m_dialog->exec();
    if (later != nullptr) {
        setParent(later);
    }
}

QString FileNameEdit::text() const
{
    return m_field != nullptr ? m_field->text() : QString();
}

void FileNameEdit::fn_can()
{
    if (m_field != nullptr) {
        m_field->clear();
    }
}
