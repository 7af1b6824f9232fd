#include "inputmethods/Installers.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

// Outside of the namespace, as its name is.
static void loadResources()
{
    Q_INIT_RESOURCE(inputmethods);
}

namespace lab {

namespace {

const char folder[] = "/installers/";
const char moved[] = "/installers/moved/";

constexpr Installer installers[] = {
    {"iFlyIME_Setup.run", "iFlyVoice", "讯飞输入法", "2.1.1708", "/iFly Info Tek/iFlyIME/2.1.1708"},
    {"iFlyIME_Setup3.run", "iFlyVoice", "讯飞输入法", "3.0.1725", "/iFly Info Tek/iFlyIME/3.0.1725"},
    {"SogouInput_Setup.run", "VoiceInput", "搜狗输入法", "1.0.0.170",
     "/SogouInput/Components/VoiceInput/1.0.0.170"},
    {"BaiduPinyin_Setup.run", "SpeechInput", "百度输入法", "1.0", "/Baidu/BaiduPinyin"},
};

} // namespace

const Installer *installerNamed(const QString &file)
{
    for (const Installer &installer : installers) {
        if (file == QLatin1String(installer.file)) {
            return &installer;
        }
    }
    return nullptr;
}

QByteArray makeInstaller(const Installer &installer, const QByteArray &program)
{
    loadResources();
    QFile file(QStringLiteral(":/inputmethods/install-method.sh"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QByteArray script = file.readAll();
    script.replace("@NAME@", installer.program);
    script.replace("@VERSION@", installer.version);
    script.replace("@TITLE@", installer.title);
    script.replace("@FOLDER@", installer.folder);
    script.replace("@SHA256@", QCryptographicHash::hash(program, QCryptographicHash::Sha256).toHex());
    const QByteArray text = program.toBase64();
    constexpr int lineLength = 76;
    for (int at = 0; at < text.size(); at += lineLength) {
        script += text.mid(at, lineLength) + '\n';
    }
    return script;
}

InstallerServer::InstallerServer(QString programs, Note note)
    : m_programs(std::move(programs))
    , m_note(std::move(note))
{
}

bool InstallerServer::takes(const QByteArray &path)
{
    return path.startsWith(folder);
}

void InstallerServer::handle(const HttpRequest &request, const LabHttpServer::Reply &reply) const
{
    const QByteArray path = request.path();
    const bool elsewhere = path.startsWith(moved);
    const QString name = QString::fromUtf8(path).section(QLatin1Char('/'), elsewhere ? 3 : 2);
    const Installer *installer = request.method == "GET" ? installerNamed(name) : nullptr;
    QFile program(installer == nullptr ? QString()
                                       : QDir(m_programs).filePath(QLatin1String(installer->program)));
    const bool found = installer != nullptr && program.open(QIODevice::ReadOnly);
    m_note({{QStringLiteral("service"), QStringLiteral("installers")},
            {QStringLiteral("path"), QString::fromUtf8(path)},
            {QStringLiteral("found"), found}});
    if (!found) {
        reply({404, "text/plain", "not found"});
    } else if (elsewhere) {
        reply({302, "text/plain", {}, folder + name.toUtf8()});
    } else {
        reply({200, "application/x-sh", makeInstaller(*installer, program.readAll())});
    }
}

} // namespace lab
