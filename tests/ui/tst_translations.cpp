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
        if (name == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (name == QLatin1String("source")) {
            messages.append({context, contentWithBytes(xml), {}, {}});
        } else if (name == QLatin1String("translation")) {
            messages.last().state = xml.attributes().value(QLatin1String("type")).toString();
            messages.last().translation = contentWithBytes(xml);
        }
    }
    return messages;
}

const QRegularExpression &chinese()
{
    static const QRegularExpression expression(QStringLiteral("[\\x{3400}-\\x{9fff}]"));
    return expression;
}

/// Chinese words of the program that are no texts for the user to read.
const QStringList &notForReading()
{
    static const QStringList words{QStringLiteral("讯飞语音悬浮窗"), // windows of other programs
                                   QStringLiteral("语音悬浮窗"), QStringLiteral("搜狗输入法语音输入 "),
                                   QStringLiteral("\\校时助手.exe"), // a sibling program
                                   // Words to be spoken, whatever the interface's language.
                                   QStringLiteral("天王盖地虎;执行命令词;"),
                                   QStringLiteral("我要搜索;百度搜索;搜一搜;"),
                                   QStringLiteral("切换到语音打字;使用语音打字"),
                                   // Labels as they stand in the files of the command words.
                                   QStringLiteral("语音键盘"), QStringLiteral("拼音键盘"),
                                   QStringLiteral("网页"), QStringLiteral("文件"), QStringLiteral("文件夹"),
                                   QStringLiteral("快捷键"), QStringLiteral("常用短语")};
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
        const int control = QStringLiteral("nrt").indexOf(literal[at]);
        text += control < 0 ? literal[at] : QStringLiteral("\n\r\t")[control];
    }
    return text;
}

/// The string literals of a source text, those that follow each other joined as the compiler does.
QStringList literalsOf(QString code)
{
    static const QRegularExpression lineComment(QStringLiteral("^\\s*//[^\\n]*$|\\s//[/<!]? [^\"\\n]*$"),
                                                QRegularExpression::MultilineOption);
    static const QRegularExpression run(
        QStringLiteral("\"((?:[^\"\\\\\\n]|\\\\.)*)\"(?:\\s*\"((?:[^\"\\\\\\n]|\\\\.)*)\")*"));
    static const QRegularExpression one(QStringLiteral("\"((?:[^\"\\\\\\n]|\\\\.)*)\""));
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

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void languages_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("traditional Chinese") << "cht";
        QTest::newRow("English") << "en";
    }

    /// What the sources hold today is what the file translates: nothing missing, nothing left over.
    void everyTextIsTranslated_data() { languages_data(); }
    void everyTextIsTranslated()
    {
        QFETCH(QString, language);
        QTemporaryDir folder;
        const QString shipped = QStringLiteral(MEVO_TRANSLATIONS "/%1.ts").arg(language);
        const QString fresh = folder.filePath(language + QStringLiteral(".ts"));
        QVERIFY(QFile::copy(shipped, fresh));
        QProcess lupdate;
        lupdate.start(QStringLiteral(MEVO_LUPDATE),
                      {QStringLiteral("-silent"), QStringLiteral("-locations"), QStringLiteral("none"),
                       QStringLiteral("-I"), QStringLiteral(MEVO_KEYPAD "/.."), QStringLiteral(MEVO_SOURCES),
                       QStringLiteral(MEVO_KEYPAD), QStringLiteral("-ts"), fresh});
        QVERIFY(lupdate.waitForFinished(60000) && lupdate.exitCode() == 0);
        // It refuses a file with no more than a warning.
        const QByteArray warnings = lupdate.readAllStandardError();
        QVERIFY2(!warnings.contains("won't be updated"), warnings.constData());
        const QList<Message> messages = messagesOf(fresh);
        QVERIFY(messages.size() > 50);
        QStringList wrong;
        for (const Message &message : messages) {
            if (!message.state.isEmpty() || message.translation.isEmpty()) {
                wrong.append(message.state + QStringLiteral(": ") + message.context + QStringLiteral(": ") +
                             message.source);
            }
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

    void theProgramFindsThem_data() { languages_data(); }
    void theProgramFindsThem()
    {
        QFETCH(QString, language);
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(":/translations/%1.qm").arg(language)));
        static const QRegularExpression place(QStringLiteral("%[0-9n]"));
        for (const Message &message : messagesOf(QStringLiteral(MEVO_TRANSLATIONS "/%1.ts").arg(language))) {
            const QString shown = translator.translate(message.context.toUtf8().constData(),
                                                       message.source.toUtf8().constData());
            QCOMPARE(shown, message.translation);
            QVERIFY2(language != QLatin1String("en") || !shown.contains(chinese()), qPrintable(shown));
            QCOMPARE(shown.count(place), message.source.count(place));
        }
    }

    /// A file with a tr() of its own looks its texts up where the translation files have them: lupdate files
    /// them under the class that the call stands in, whatever context that tr() names.
    void aTrOfOnesOwnNamesTheContextOfItsTexts()
    {
        static const QRegularExpression own(
            QStringLiteral("\\btr\\(const char \\*\\w+\\)\\s*\\{[^}]*translate\\(\"([^\"]+)\""));
        static const QRegularExpression call(QStringLiteral("\\btr\\((\"[^;]*?\")\\)"));
        QSet<QString> known;
        for (const Message &message : messagesOf(QStringLiteral(MEVO_TRANSLATIONS "/en.ts"))) {
            known.insert(message.context + QLatin1Char(':') + message.source);
        }
        QDirIterator files(QStringLiteral(MEVO_SOURCES), {QStringLiteral("*.cpp")}, QDir::Files,
                           QDirIterator::Subdirectories);
        QStringList wrong;
        int seen = 0;
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString code = QString::fromUtf8(file.readAll());
            const QRegularExpressionMatch context = own.match(code);
            for (auto calls = call.globalMatch(code); context.hasMatch() && calls.hasNext();) {
                for (const QString &literal : literalsOf(calls.next().captured(1))) {
                    ++seen;
                    if (!known.contains(context.captured(1) + QLatin1Char(':') + literal)) {
                        wrong.append(files.fileName() + QStringLiteral(": ") + literal);
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
        for (const char *folder : {MEVO_SOURCES, MEVO_KEYPAD}) {
            QDirIterator files(QString::fromUtf8(folder), {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                               QDir::Files, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                QFile file(files.next());
                QVERIFY(file.open(QIODevice::ReadOnly));
                for (const QString &literal : literalsOf(QString::fromUtf8(file.readAll()))) {
                    if (!literal.contains(chinese())) {
                        continue;
                    }
                    ++seen;
                    if (!known.contains(literal) && !notForReading().contains(literal)) {
                        wrong.append(files.fileName() + QStringLiteral(": ") + literal);
                    }
                }
            }
        }
        QVERIFY(seen > 50);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }
};

QTEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
