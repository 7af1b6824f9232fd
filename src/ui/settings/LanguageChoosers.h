#pragma once

#include <QDialog>
#include <QVector>

class QCheckBox;
struct MainState;

namespace mevo {

/// A language that can be ticked.
struct LanguageTick
{
    QString label;
    QString code;
    QString alias; ///< another form of the code that lists hold as well; never written
};

/// A list of languages to tick, kept under one key as codes with a ";" behind each.
class LanguageChooser : public QDialog
{
    Q_OBJECT

public:
    LanguageChooser(MainState &state, const char *key, const QVector<LanguageTick> &languages,
                    const QString &hint, const char *okName, QWidget *parent);

protected:
    /// Writes what is ticked, in the order of the rows, and closes.
    void take();

private:
    MainState &m_state;
    const char *m_key;
    QVector<LanguageTick> m_languages;
    QVector<QCheckBox *> m_boxes;
};

} // namespace mevo

/// Chooses minor languages of XunFei's streaming recognition.
class CSelectSmallLanDialectDialog : public mevo::LanguageChooser
{
    Q_OBJECT

public:
    explicit CSelectSmallLanDialectDialog(MainState &state, QWidget *parent = nullptr);

public Q_SLOTS:
    void on_pushButton_SmallLanDlg_OK_clicked() { take(); }
};

/// Chooses Chinese dialects of XunFei's streaming recognition.
class CSelectXFWebApiDialectDialog : public mevo::LanguageChooser
{
    Q_OBJECT

public:
    explicit CSelectXFWebApiDialectDialog(MainState &state, QWidget *parent = nullptr);

public Q_SLOTS:
    void on_pushButton_SelectDialectDlg_OK_clicked() { take(); }
};
