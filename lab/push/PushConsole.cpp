#include "push/PushConsole.h"

#include "desk/HttpGet.h"

#include <QCommandLineParser>
#include <QTextStream>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace lab {

namespace {

constexpr int answerMs = 5000;

/// An order's first word, and the key of the control address that its rest goes under.
struct Order
{
    const char *word;
    const char *key;
    const char *usage;
};

constexpr Order orders[] = {
    {"page", "text", "page ADDRESS;SECONDS;LINK: a notice that shows a page"},
    {"picture", "text", "picture ADDRESS;SECONDS;SIZE;NAME;LINK: a notice that shows a picture"},
    {"text", "text", "text FIELDS: any fields, enciphered, with their length; lab:/ is the web folder"},
    {"digits", "text", "digits DIGITS FIELDS: the same with other digits before it"},
    {"raw", "raw", "raw TEXT: a text as it stands"},
    {"huge", "huge", "huge N: N characters"},
    {"binary", "binary", "binary TEXT: a binary message"},
    {"break", "break", "break close|reset|protocol: ends the connections"},
    {"refuse", "refuse", "refuse N: the next N connections are reset, -1 all"},
    {"stall", "stall", "stall N: the next N handshakes get no answer"},
};

/// The query of an order; empty when it is none.
QString queryOf(const QString &line)
{
    const QString word = line.section(QLatin1Char(' '), 0, 0);
    QString rest = line.section(QLatin1Char(' '), 1);
    const auto *order = std::find_if(std::begin(orders), std::end(orders),
                                     [&word](const Order &row) { return word == QLatin1String(row.word); });
    if (order == std::end(orders)) {
        return {};
    }
    const auto item = [](const char *key, const QString &value) {
        return QLatin1String(key) + QLatin1Char('=') +
               QString::fromLatin1(QUrl::toPercentEncoding(value, "/:;"));
    };
    QString more;
    if (word == QLatin1String("digits")) {
        more = QLatin1Char('&') + item("digits", rest.section(QLatin1Char(' '), 0, 0));
        rest = rest.section(QLatin1Char(' '), 1);
    } else if (word == QLatin1String("page")) {
        rest.prepend(QLatin1String("url;"));
    } else if (word == QLatin1String("picture")) {
        rest.prepend(QLatin1String("image;"));
    }
    return item(order->key, rest) + more;
}

bool send(const QString &control, const QString &line)
{
    const QString query = queryOf(line);
    if (query.isEmpty()) {
        std::fprintf(stderr, "push: unknown order: %s\n", qUtf8Printable(line));
        return false;
    }
    const mevo::lab::HttpAnswer answer =
        mevo::lab::httpGet(QUrl(control + QLatin1String("/push?") + query, QUrl::StrictMode), answerMs);
    if (answer.status != 200) {
        std::fprintf(stderr, "push: not sent, status %d %s\n", answer.status, qUtf8Printable(answer.error));
        return false;
    }
    return true;
}

} // namespace

int runPush(const QStringList &arguments)
{
    QCommandLineParser parser;
    QString help = QStringLiteral("Says something on the push socket of running services. Orders:\n");
    for (const Order &order : orders) {
        help += QLatin1String("  ") + QLatin1String(order.usage) + QLatin1Char('\n');
    }
    parser.setApplicationDescription(help);
    parser.addHelpOption();
    const QCommandLineOption address(QStringLiteral("control"), QStringLiteral("The control address."),
                                     QStringLiteral("address"), qEnvironmentVariable("CONTROL"));
    parser.addOption(address);
    parser.addPositionalArgument(QStringLiteral("order"), QStringLiteral("One order; else standard input."));
    parser.process(arguments);
    const QString control = parser.value(address);
    if (control.isEmpty()) {
        parser.showHelp(2);
    }
    if (!parser.positionalArguments().isEmpty()) {
        return send(control, parser.positionalArguments().join(QLatin1Char(' '))) ? 0 : 1;
    }
    bool allSent = true;
    QTextStream input(stdin);
    input.setCodec("UTF-8");
    for (QString line; input.readLineInto(&line);) {
        allSent &= line.trimmed().isEmpty() || send(control, line);
    }
    return allSent ? 0 : 1;
}

} // namespace lab
