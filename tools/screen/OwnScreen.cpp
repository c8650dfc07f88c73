#include "tools/screen/OwnScreen.h"

#include <QFile>
#include <QtGlobal>

using namespace Qt::StringLiterals;

namespace {

QtMessageHandler otherHandler = nullptr;

// A screen in memory cannot do everything that a window asks for, and says so each time.
void passOn(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!text.startsWith(u"This plugin does not support "_s)) {
        otherHandler(type, context, text);
    }
}

} // namespace

OwnScreen::OwnScreen()
{
    otherHandler = qInstallMessageHandler(passOn);
    const QByteArray directory = QFile::encodeName(m_directory.path());
    qputenv("XDG_CONFIG_HOME", directory);
    qputenv("XDG_RUNTIME_DIR", directory);
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        return;
    }
    QFile file(m_directory.filePath(u"screen.json"_s));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(R"({"screens":[{"name":"panel","x":0,"y":0,"width":800,"height":480,)"
                   R"("logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})");
    }
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(file.fileName()));
}
