#include "output/TextEffects.h"

#include "base/Utf8.h"

#include <QDebug>
#include <QStringList>

#include <opencc.h>

namespace mevo {

namespace {

/// OpenCC's converter, opened at the first use and kept: opening reads its tables from disk.
class Converter
{
public:
    Converter()
        : m_handle(opencc_open("s2tw.json"))
    {
        if (!isOpen()) {
            qWarning() << "Traditional output: the conversion tables cannot be opened:" << opencc_error();
        }
    }
    ~Converter()
    {
        if (isOpen()) {
            opencc_close(m_handle);
        }
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    QString convert(const QString &text) const
    {
        if (!isOpen()) {
            return text;
        }
        // The library takes and gives texts that end at a zero.
        if (text.contains(QChar(QChar::Null))) {
            QStringList parts = text.split(QChar(QChar::Null));
            for (QString &part : parts) {
                part = convert(part);
            }
            return parts.join(QChar(QChar::Null));
        }
        const QByteArray utf8 = text.toUtf8();
        char *converted = opencc_convert_utf8(m_handle, utf8.constData(), static_cast<size_t>(utf8.size()));
        if (converted == nullptr) {
            qWarning() << "Traditional output: a text cannot be converted:" << opencc_error();
            return text;
        }
        const QString result = textOfUtf8(converted);
        opencc_convert_utf8_free(converted);
        return result;
    }

private:
    // The library answers (opencc_t)-1 for "not opened".
    bool isOpen() const { return reinterpret_cast<intptr_t>(m_handle) != -1; }

    opencc_t m_handle;
};

} // namespace

QString toTraditional(const QString &text)
{
    static const Converter converter;
    return converter.convert(text);
}

bool isMappedWord(const QString &mapWords, const QString &key)
{
    return mapWords.toLower().split(QLatin1Char(';')).contains(key);
}

} // namespace mevo
