#include "desk/DeskScript.h"

#include "receiver/ReceiverConsole.h"

#include <algorithm>
#include <iterator>

namespace mevo::lab {

namespace {

constexpr int anyNumber = 1000;

/// A kind of step: how many arguments it takes, and which options may follow them.
struct StepKind
{
    const char *verb;
    int fewest;
    int most;
    const char *options; ///< apart by spaces
    const char *usage;
};
constexpr StepKind stepKinds[] = {
    {"set", 2, 2, "", "set NAME VALUE: a variable of the program's environment"},
    {"start-program", 0, anyNumber, "file",
     "start-program [ARGUMENTS...] [file PATH]: under the test bed of the receiver"},
    {"stop-program", 0, 0, "within",
     "stop-program [within MS]: asks it to end; fails when it must be killed"},
    {"wait-exit", 1, 1, "within", "wait-exit CODE [within MS]: the program ends by itself"},
    {"expect-running", 0, 0, "", "expect-running: the program has not ended"},
    {"target", 1, 1, "as", "target xterm|mousepad|featherpad [as NAME]: a window to type into"},
    {"close", 1, 1, "", "close NAME: ends a target"},
    {"focus", 1, 1, "", "focus NAME: the focus goes to a target; texts are read from it from here on"},
    {"clear", 0, 1, "", "clear [NAME]: empties a target"},
    {"wait-text", 1, 1, "in within", "wait-text \"TEXT\" [in NAME] [within MS]: the target holds it"},
    {"expect-text", 1, 1, "in within",
     "expect-text \"TEXT\" [in NAME] [within MS]: the target holds only it"},
    {"wait-log", 1, 1, "within", "wait-log \"TEXT\" [within MS]: the program has written it since the mark"},
    {"no-log", 1, 1, "for", "no-log \"TEXT\" [for MS]: it has not, and does not for a while"},
    {"wait-file", 2, 2, "within", "wait-file FILE \"TEXT\" [within MS]: the file holds it"},
    {"expect-feature", 1, 8, "within", "expect-feature HEX [within MS]: the same as wait-feature"},
    {"wait-window", 1, 1, "within", "wait-window \"PATTERN\" [within MS]: a visible window's title or class"},
    {"wait-menu", 1, 1, "within",
     "wait-menu \"PATTERN\" [within MS]: such a window is visible and has the keyboard"},
    {"no-window", 1, 1, "within", "no-window \"PATTERN\" [within MS]: none such is left"},
    {"speak", 1, 1, "voice",
     "speak FILE|\"TEXT\" [voice rms|kal16|mandarin]: into the microphone, to its end"},
    {"hear", 3, 3, "over within",
     "hear \"WORDS\" X Y [over \"PATTERN\"] [within MS]: clicks as click does, and the speaker says these "
     "English words; clicks again when something else was understood"},
    {"hold", 1, 1, "", "hold MS: time passes"},
    {"key", 1, 1, "", "key CHORD: on the user's keyboard, such as ctrl+z"},
    {"click", 2, 3, "over",
     "click X Y [BUTTON] [over \"PATTERN\"]: with the user's mouse; X and Y count "
     "from the corner of a window's title or class"},
    {"pointer", 2, 2, "over", "pointer X Y [over \"PATTERN\"]: the mouse goes there"},
    {"button", 2, 2, "", "button down|up BUTTON: of the mouse"},
    {"expect-near", 3, 3, "over within",
     "expect-near X Y \"PATTERN\" [over \"PATTERN\"] [within MS]: a window's rectangle comes within 12 "
     "pixels of "
     "a point, counted as for click"},
    {"expect-place", 3, 3, "over within",
     "expect-place X Y \"PATTERN\" [over \"PATTERN\"] [within MS]: a window's corner, to 2 pixels"},
    {"expect-focus", 1, 1, "within",
     "expect-focus NAME|\"PATTERN\" [within MS]: this target, or such a visible window, has the focus"},
    {"screenshot", 1, 1, "of", "screenshot FILE [of \"PATTERN\"]: of the screen or of a visible window"},
    {"http", 2, 2, "contains within",
     "http GET URL [contains \"TEXT\"] [within MS]: asked again until the answer holds the text"},
    {"sh", 1, 1, "within",
     "sh \"COMMAND\" [within MS]: fails when the command does, when it still does after that time; "
     "PROGRAM_PID "
     "is the program's process"},
    {"note", 1, 1, "", "note \"TEXT\": prints it"},
    {"log", 0, 0, "", "log: prints what the program has written"},
    {"clock", 0, 0, "", "clock: starts the stopwatch"},
    {"lap", 1, 1, "", "lap \"LABEL\": prints the stopwatch"},
    {"moment", 1, 1, "", "moment \"LABEL\": prints the monotonic clock in milliseconds, as services note it"},
};

struct Word
{
    QString text;
    bool quoted = false;
};

/// A line's words, or what is wrong with it.
struct Words
{
    std::vector<Word> words;
    QString error;
};

QChar unescaped(QChar character)
{
    switch (character.unicode()) {
    case 'n':
        return QLatin1Char('\n');
    case 'r':
        return QLatin1Char('\r');
    case 't':
        return QLatin1Char('\t');
    default:
        return character;
    }
}

Words splitWords(const QString &line)
{
    Words result;
    int at = 0;
    while (at < line.size()) {
        if (line.at(at).isSpace()) {
            ++at;
            continue;
        }
        if (line.at(at) == QLatin1Char('#'))
            break;
        Word word;
        word.quoted = line.at(at) == QLatin1Char('"');
        if (word.quoted) {
            for (++at; at < line.size() && line.at(at) != QLatin1Char('"'); ++at) {
                if (line.at(at) == QLatin1Char('\\') && at + 1 < line.size())
                    word.text += unescaped(line.at(++at));
                else
                    word.text += line.at(at);
            }
            if (at >= line.size()) {
                result.error = QStringLiteral("a quote is not closed");
                return result;
            }
            ++at;
        } else {
            for (; at < line.size() && !line.at(at).isSpace(); ++at)
                word.text += line.at(at);
        }
        result.words.push_back(word);
    }
    return result;
}

/// Puts values in place of "${NAME}". Empty when all went well, else the error.
QString substitute(QString &text, const std::function<std::optional<QString>(const QString &)> &variable)
{
    for (int start = 0; (start = text.indexOf(QLatin1String("${"), start)) >= 0;) {
        const int end = text.indexOf(QLatin1Char('}'), start);
        if (end < 0)
            return QStringLiteral("${ without }");
        const QString name = text.mid(start + 2, end - start - 2);
        const std::optional<QString> value = variable(name);
        if (!value)
            return QStringLiteral("no variable %1").arg(name);
        text.replace(start, end - start + 1, *value);
        start += value->size();
    }
    return {};
}

bool isTime(const QString &option)
{
    return option == QLatin1String("within") || option == QLatin1String("for");
}

/// Moves trailing pairs of an option and its value from the words to the step.
QString takeOptions(std::vector<Word> &words, const QStringList &allowed, DeskStep &step)
{
    while (words.size() >= 2) {
        const Word &name = words[words.size() - 2];
        if (name.quoted || !allowed.contains(name.text))
            break;
        const QString value = words.back().text;
        bool isNumber = false;
        if (isTime(name.text) && (value.toInt(&isNumber) < 0 || !isNumber))
            return QStringLiteral("%1 is no number of milliseconds").arg(value);
        if (step.options.contains(name.text))
            return QStringLiteral("%1 stands twice").arg(name.text);
        step.options.insert(name.text, value);
        words.resize(words.size() - 2);
    }
    return {};
}

/// Fills a step from its words. Empty when all went well, else the error.
QString readStep(std::vector<Word> words, DeskStep &step)
{
    step.verb = words.front().text;
    words.erase(words.begin());
    const auto *kind = std::find_if(std::begin(stepKinds), std::end(stepKinds), [&step](const StepKind &row) {
        return step.verb == QLatin1String(row.verb);
    });
    const bool ours = kind != std::end(stepKinds);
    if (!ours && !ReceiverConsole::knows(step.verb))
        return QStringLiteral("unknown step %1").arg(step.verb);
    if (ours) {
        const QStringList allowed = QString::fromLatin1(kind->options).split(QLatin1Char(' '));
        const QString error = takeOptions(words, allowed, step);
        if (!error.isEmpty())
            return error;
        if (int(words.size()) < kind->fewest || int(words.size()) > kind->most)
            return QStringLiteral("usage: %1").arg(QLatin1String(kind->usage));
    }
    for (const Word &word : words)
        step.arguments.append(word.text);
    return {};
}

} // namespace

int DeskStep::milliseconds(const QString &option, int otherwise) const
{
    return options.contains(option) ? options.value(option).toInt() : otherwise;
}

DeskScript parseDeskScript(const QString &text,
                           const std::function<std::optional<QString>(const QString &name)> &variable)
{
    DeskScript script;
    int number = 0;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        ++number;
        Words split = splitWords(line);
        QString error = split.error;
        for (Word &word : split.words) {
            if (error.isEmpty())
                error = substitute(word.text, variable);
        }
        DeskStep step;
        step.line = number;
        step.source = line.trimmed();
        if (error.isEmpty() && !split.words.empty())
            error = readStep(std::move(split.words), step);
        if (!error.isEmpty()) {
            script.errorLine = number;
            script.error = error;
            return script;
        }
        if (!step.verb.isEmpty())
            script.steps.push_back(step);
    }
    return script;
}

QStringList deskStepHelp()
{
    QStringList lines;
    for (const StepKind &row : stepKinds)
        lines.append(QLatin1String(row.usage));
    return lines + ReceiverConsole::help();
}

} // namespace mevo::lab
