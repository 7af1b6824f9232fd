#include "desk/SpeechClip.h"

#include "receiver/WaitUntil.h"

#include <algorithm>
#include <iterator>

namespace mevo::lab {

namespace {

constexpr int speakTimeoutMs = 30000;
constexpr int playTimeoutMs = 120000;

struct Voice
{
    const char *name;
    const char *program;
    std::initializer_list<const char *> arguments; ///< %text and %file are filled in
};
constexpr std::initializer_list<const char *> rms = {"-voice", "rms", "-t", "%text", "-o", "%file"};
constexpr std::initializer_list<const char *> kal16 = {"-voice", "kal16", "--setf", "duration_stretch=1.3",
                                                       "-t",     "%text", "-o",     "%file"};
constexpr std::initializer_list<const char *> mandarin = {"-v", "cmn-latn-pinyin", "-w", "%file", "%text"};
constexpr Voice voiceTable[] = {
    {"rms", "flite", rms}, {"kal16", "flite", kal16}, {"mandarin", "espeak-ng", mandarin}};

bool run(const QString &program, const QStringList &arguments, int timeoutMs, QString *reason)
{
    QProcess process;
    process.start(program, arguments);
    const bool ended = process.waitForStarted() &&
                       waitUntil([&process] { return process.state() == QProcess::NotRunning; }, timeoutMs);
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return true;
    const QString error = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
    *reason = program + QStringLiteral(": ") + (error.isEmpty() ? process.errorString() : error);
    process.kill();
    process.waitForFinished();
    return false;
}

} // namespace

QStringList voices()
{
    QStringList names;
    for (const Voice &voice : voiceTable)
        names.append(QLatin1String(voice.name));
    return names;
}

bool speakIntoFile(const QString &text, const QString &voice, const QString &file, QString *reason)
{
    const auto *row =
        std::find_if(std::begin(voiceTable), std::end(voiceTable),
                     [&voice](const Voice &known) { return voice == QLatin1String(known.name); });
    if (row == std::end(voiceTable)) {
        *reason = QStringLiteral("no voice %1").arg(voice);
        return false;
    }
    QStringList arguments;
    for (const char *argument : row->arguments) {
        if (qstrcmp(argument, "%text") == 0)
            arguments.append(text);
        else if (qstrcmp(argument, "%file") == 0)
            arguments.append(file);
        else
            arguments.append(QLatin1String(argument));
    }
    return run(QLatin1String(row->program), arguments, speakTimeoutMs, reason);
}

bool playIntoMicrophone(const QString &file, QString *reason)
{
    QStringList arguments{QStringLiteral("--device=vmic_in"), QStringLiteral("--latency-msec=400")};
    if (file.endsWith(QLatin1String(".raw")) || file.endsWith(QLatin1String(".pcm"))) {
        arguments << QStringLiteral("--raw") << QStringLiteral("--rate=16000")
                  << QStringLiteral("--format=s16le") << QStringLiteral("--channels=1");
    }
    arguments << file;
    return run(QStringLiteral("paplay"), arguments, playTimeoutMs, reason);
}

} // namespace mevo::lab
