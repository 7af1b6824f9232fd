#include "support/Rows.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

struct Message
{
    QString context;
    QString source;
    QString translation;
    QString state; ///< "unfinished", "vanished", "obsolete" or empty
};

QString contentWithBytes(QXmlStreamReader &xml)
{
    QString content;
    while (xml.readNext() != QXmlStreamReader::EndElement && !xml.atEnd()) {
        if (xml.isCharacters()) {
            content += xml.text();
        } else if (xml.isStartElement()) { // <byte value="xd"/>: what XML cannot hold
            const QString value = xml.attributes().value(QLatin1String("value")).toString();
            content += QChar(value.mid(1).toInt(nullptr, 16));
            xml.skipCurrentElement();
        }
    }
    return content;
}

QList<Message> messagesOf(const QString &path)
{
    QFile file(path);
    QList<Message> messages;
    if (!file.open(QIODevice::ReadOnly)) {
        return messages;
    }
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QString name = xml.name().toString();
        if (name == "name"_s) {
            context = xml.readElementText();
        } else if (name == "source"_s) {
            messages.append({context, contentWithBytes(xml), {}, {}});
        } else if (name == "translation"_s) {
            messages.last().state = xml.attributes().value(QLatin1String("type")).toString();
            messages.last().translation = contentWithBytes(xml);
        }
    }
    return messages;
}

const QRegularExpression &chinese()
{
    static const QRegularExpression expression("[\\x{3400}-\\x{9fff}]"_s);
    return expression;
}

/// Chinese words of the program that are no texts for the user to read.
const QStringList &notForReading()
{
    static const QStringList words{
        "讯飞语音悬浮窗"_s, // windows of other programs
        "语音悬浮窗"_s, "搜狗输入法语音输入 "_s,
        "\\校时助手.exe"_s, // a sibling program
        // Words to be spoken, whatever the interface's language.
        "天王盖地虎;执行命令词;"_s, "我要搜索;百度搜索;搜一搜;"_s, "切换到语音打字;使用语音打字"_s,
        // Labels as they stand in the files of the command words.
        "语音键盘"_s, "拼音键盘"_s, "网页"_s, "文件"_s, "文件夹"_s, "快捷键"_s, "常用短语"_s};
    return words;
}

QString unescaped(const QString &literal)
{
    QString text;
    for (int at = 0; at < literal.size(); ++at) {
        if (literal[at] != QLatin1Char('\\') || at + 1 == literal.size()) {
            text += literal[at];
            continue;
        }
        ++at;
        const int control = "nrt"_s.indexOf(literal[at]);
        text += control < 0 ? literal[at] : "\n\r\t"_s[control];
    }
    return text;
}

/// The string literals of a source text, those that follow each other joined as the compiler does.
QStringList literalsOf(QString code)
{
    static const QRegularExpression lineComment("^\\s*//[^\\n]*$|\\s//[/<!]? [^\"\\n]*$"_s,
                                                QRegularExpression::MultilineOption);
    static const QRegularExpression run(
        "\"((?:[^\"\\\\\\n]|\\\\.)*)\"(?:\\s*\"((?:[^\"\\\\\\n]|\\\\.)*)\")*"_s);
    static const QRegularExpression one("\"((?:[^\"\\\\\\n]|\\\\.)*)\""_s);
    code.remove(lineComment);
    QStringList literals;
    for (auto runs = run.globalMatch(code); runs.hasNext();) {
        QString joined;
        for (auto parts = one.globalMatch(runs.next().captured()); parts.hasNext();) {
            joined += unescaped(parts.next().captured(1));
        }
        literals.append(joined);
    }
    return literals;
}

/// The program's source files, by name and content.
QList<QPair<QString, QString>> sourcesIn(const QString &folder, const QStringList &names)
{
    QList<QPair<QString, QString>> sources;
    QDirIterator files(folder, names, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("cannot read %s", qPrintable(file.fileName()));
        }
        sources.append({files.fileName(), QString::fromUtf8(file.readAll())});
    }
    return sources;
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void languages_data()
    {
        const Rows<QString> row; // language
        row("traditional Chinese", "cht");
        row("English", "en");
    }

    /// What the sources hold today is what the file translates: nothing missing, nothing left over.
    void everyTextIsTranslated_data() { languages_data(); }
    void everyTextIsTranslated()
    {
        const auto [language] = rowOf<QString>();
        QTemporaryDir folder;
        const QString shipped = QStringLiteral(MEVO_TRANSLATIONS "/%1.ts").arg(language);
        const QString fresh = folder.filePath(language + ".ts"_s);
        QVERIFY(QFile::copy(shipped, fresh));
        QProcess lupdate;
        lupdate.start(QStringLiteral(MEVO_LUPDATE),
                      {"-silent"_s, "-locations"_s, "none"_s, "-I"_s, QStringLiteral(MEVO_KEYPAD "/.."),
                       QStringLiteral(MEVO_SOURCES), QStringLiteral(MEVO_KEYPAD), "-ts"_s, fresh});
        QVERIFY(lupdate.waitForFinished(60000) && lupdate.exitCode() == 0);
        // It refuses a file with no more than a warning.
        const QByteArray warnings = lupdate.readAllStandardError();
        QVERIFY2(!warnings.contains("won't be updated"), warnings.constData());
        const QList<Message> messages = messagesOf(fresh);
        QVERIFY(messages.size() > 50);
        QStringList wrong;
        for (const Message &message : messages) {
            if (!message.state.isEmpty() || message.translation.isEmpty()) {
                wrong.append(message.state + ": "_s + message.context + ": "_s + message.source);
            }
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

    void theProgramFindsThem_data() { languages_data(); }
    void theProgramFindsThem()
    {
        const auto [language] = rowOf<QString>();
        QTranslator translator;
        QVERIFY(translator.load(":/translations/%1.qm"_s.arg(language)));
        static const QRegularExpression place("%[0-9n]"_s);
        for (const Message &message : messagesOf(QStringLiteral(MEVO_TRANSLATIONS "/%1.ts").arg(language))) {
            const QString shown = translator.translate(message.context.toUtf8().constData(),
                                                       message.source.toUtf8().constData());
            QCOMPARE(shown, message.translation);
            QVERIFY2(language != "en"_s || !shown.contains(chinese()), qPrintable(shown));
            QCOMPARE(shown.count(place), message.source.count(place));
        }
    }

    /// A file with a tr() of its own looks its texts up where the translation files have them: lupdate files
    /// them under the class that the call stands in, whatever context that tr() names.
    void aTrOfOnesOwnNamesTheContextOfItsTexts()
    {
        static const QRegularExpression own(
            "\\btr\\(const char \\*\\w+\\)\\s*\\{[^}]*translate\\(\"([^\"]+)\""_s);
        static const QRegularExpression call("\\btr\\((\"[^;]*?\")\\)"_s);
        QSet<QString> known;
        for (const Message &message : messagesOf(QStringLiteral(MEVO_TRANSLATIONS "/en.ts"))) {
            known.insert(message.context + QLatin1Char(':') + message.source);
        }
        QStringList wrong;
        int seen = 0;
        for (const auto &[name, code] : sourcesIn(QStringLiteral(MEVO_SOURCES), {"*.cpp"_s})) {
            const QRegularExpressionMatch context = own.match(code);
            for (auto calls = call.globalMatch(code); context.hasMatch() && calls.hasNext();) {
                for (const QString &literal : literalsOf(calls.next().captured(1))) {
                    ++seen;
                    if (!known.contains(context.captured(1) + u':' + literal)) {
                        wrong.append(name + ": "_s + literal);
                    }
                }
            }
        }
        QVERIFY(seen > 0);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

    /// A Chinese text that goes to the user without tr() is in no translation file.
    void noTextBypassesTranslation()
    {
        QSet<QString> known;
        for (const Message &message : messagesOf(QStringLiteral(MEVO_TRANSLATIONS "/en.ts"))) {
            known.insert(message.source);
        }
        QStringList wrong;
        int seen = 0;
        for (const auto &[name, code] : sourcesIn(QStringLiteral(MEVO_SOURCES), {"*.cpp"_s, "*.h"_s}) +
                                            sourcesIn(QStringLiteral(MEVO_KEYPAD), {"*.cpp"_s, "*.h"_s})) {
            for (const QString &literal : literalsOf(code)) {
                const bool read = literal.contains(chinese());
                seen += read;
                if (read && !known.contains(literal) && !notForReading().contains(literal)) {
                    wrong.append(name + ": "_s + literal);
                }
            }
        }
        QVERIFY(seen > 50);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }
};

QTEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
